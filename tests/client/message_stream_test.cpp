#include "client/message_stream.h"

#include <functional>

#include <gtest/gtest.h>

#include "support/memory_connection.h"
#include "support/raised.h"
#include "support/wire_entries.h"

namespace gantry::test {
namespace {

constexpr const char* kShort = "length_error: Not enough data read from network";
constexpr const char* kStillReceiving =
    "logic_error: Cannot receive a message as the previous message is still on going.";

struct Wire {
  explicit Wire(std::string incoming = {}) : connection(std::move(incoming)) {}

  MemoryConnection connection;
  MessageStream stream{connection};
};

TEST(Codec, WritesTheSetupMessageToTheByte) {
  Wire wire;
  wire.stream.CreateOutgoingMessage()
      .AppendMarker("SETUP")
      .AppendString("VERSION", "V2")
      .AppendMarker("END")
      .Send();
  const std::string zero(8, '\0');
  EXPECT_EQ(wire.connection.outgoing, Word(64) + Word(64) + "\5SETUP" + zero + "MESS" +
                                          "\7VERSION" + Word(1) + "CSTR" + Word(2) + "V2" +
                                          "\3END" + zero + "MESS");
}

TEST(Codec, WritesEveryKindOfArray) {
  const Texts texts = {"", "two"};
  const Ints ints = {-1, 7};
  const Numbers numbers = {0.25, -1e300};
  Wire wire;
  wire.stream.CreateOutgoingMessage()
      .AppendInts("I", ints)
      .AppendDoubles("D", numbers)
      .AppendStrings("S", texts)
      .AppendStrings("", {})
      .AppendInt("ONE", 1)
      .AppendDouble("HALF", 0.5)
      .AppendRepeated("E", 2, "two")
      .Send();
  EXPECT_EQ(wire.connection.outgoing, Frame({{"I", ints},
                                             {"D", numbers},
                                             {"S", texts},
                                             {"", Texts{}},
                                             {"ONE", Ints{1}},
                                             {"HALF", Numbers{0.5}},
                                             {"E", Texts{"two", "two"}}}));
}

TEST(Codec, CutsAt65536Bytes) {
  const std::vector<std::pair<size_t, std::vector<size_t>>> cuts = {
      {0, {16}},
      {65535, {16, 65535}},
      {65536, {16, 65536}},
      {65537, {16, 65536, 8, 1}},
      {131073, {16, 65536, 8, 65536, 8, 1}}};
  for (const auto& [payload, writes] : cuts) {
    Wire wire;
    OutgoingMessage message = wire.stream.CreateOutgoingMessage();
    // An entry's header of 14 bytes and one element's length word of 8.
    if (payload > 0) message.AppendString("N", std::string(payload - 22, 'x'));
    message.Send();
    EXPECT_EQ(wire.connection.writes, writes);
    wire.stream.CreateOutgoingMessage();
    Wire back(wire.connection.outgoing);
    back.stream.ReceiveMessage();
    EXPECT_EQ(back.connection.position, wire.connection.outgoing.size());
  }
}

TEST(Codec, AssemblesChunksOfAnyLength) {
  const std::string payload = Payload({"READY", "END"});
  std::string frame = Word(payload.size()) + Word(0);  // an empty first chunk is let pass
  for (const char byte : payload) frame += Word(1) + byte;
  Wire wire(frame);
  IncomingMessage message = wire.stream.ReceiveMessage();
  message.ExpectMarker("READY");
  message.ExpectMarker("END");
  message.EndOfMessage();
}

TEST(Codec, TakesNamesOf255BytesAndNoLongerOnes) {
  const std::string name(255, 'n');
  Wire wire;
  wire.stream.CreateOutgoingMessage().AppendMarker(name).Send();
  Wire back(wire.connection.outgoing);
  EXPECT_EQ(back.stream.ReceiveMessage().ReadHeader().name, name);

  OutgoingMessage message = wire.stream.CreateOutgoingMessage();
  EXPECT_EQ(Raised([&] { message.AppendMarker(name + "n"); }),
            "logic_error: Size of header name (256) exceeds the allowed limit (255).");
  EXPECT_EQ(Raised([&] { wire.stream.CreateOutgoingMessage(); }), "nothing raised")
      << "nothing has been written";
}

TEST(Codec, SendsNothingMoreAfterASendThatFailed) {
  struct Broken : MemoryConnection {
    void Write(std::span<const std::byte>) override { throw std::runtime_error("broken"); }
  };
  const auto compose = [](MessageStream& stream) {
    return stream.CreateOutgoingMessage().AppendMarker("HALF");
  };
  Wire whole;
  EncodedMessage encoded;
  compose(whole.stream).KeepAs(encoded);
  const std::function<void(MessageStream&)> sends[] = {
      [&](MessageStream& stream) { compose(stream).Send(); },
      [&](MessageStream& stream) { stream.Send(encoded); }};
  for (const auto& send : sends) {
    Broken connection;
    MessageStream stream(connection);
    EXPECT_EQ(Raised([&] { send(stream); }), "runtime_error: broken");
    EXPECT_EQ(Raised([&] { send(stream); }),
              "logic_error: Cannot create a new out-going message as the previous message is still "
              "on going.");
  }
}

TEST(Codec, RefusesASecondMessageBeforeTheFirstHasEnded) {
  Wire wire(Frame(Entries{"READY"}));
  wire.stream.CreateOutgoingMessage().AppendMarker("HALF");
  EXPECT_EQ(Raised([&] { wire.stream.CreateOutgoingMessage(); }),
            "logic_error: Cannot create a new out-going message as the previous message is still "
            "on going.");
  EXPECT_EQ(Raised([&] { wire.stream.ReceiveMessage(); }), kStillReceiving);
}

TEST(Codec, RefusesFramesThatBreakTheFormatAndBelievesNoMereClaim) {
  const std::string ended =
      "exception: read: " +
      boost::system::errc::make_error_code(boost::system::errc::connection_reset).message();
  const std::string absurd = Word(uint64_t{1} << 62);
  const std::vector<std::pair<std::string, std::string>> frames = {
      {Word(10) + Word(4) + "1234" + Word(0),
       "length_error: Incorrect zero chunk length received."},
      {Word(20) + Word(10) + "0123456789" + Word(70000),
       "length_error: Incorrect length in header (received: 70000 vs allowed:10)"},
      {Word(5) + Word(6), "length_error: Incorrect length in header (received: 6 vs allowed:5)"},
      {Word(5) + Word(5) + "123", ended},
      {absurd + absurd + "few", ended}};
  for (const auto& [bytes, failure] : frames) {
    Wire wire(bytes);
    EXPECT_EQ(Raised([&] { wire.stream.ReceiveMessage(); }), failure);
    EXPECT_EQ(Raised([&] { wire.stream.ReceiveMessage(); }), kStillReceiving);
    EXPECT_LE(wire.connection.largestRead, size_t{1} << 20) << "storage was found for a claim";
  }
}

TEST(Codec, RefusesEntriesThatBreakTheFormat) {
  using Read = void (*)(IncomingMessage&);
  const Read header = [](IncomingMessage& m) { m.ReadHeader(); };
  const Read doubles = [](IncomingMessage& m) { m.ReadDoubles("D"); };
  const Read strings = [](IncomingMessage& m) { m.ReadStrings("S"); };
  struct Refusal {
    std::string payload;
    Read read;
    std::string failure;
  };
  const std::vector<Refusal> refusals = {
      {HeaderBytes("NAME", 0, "ME"), header, kShort},
      {HeaderBytes("NAME", 0, "LONG"), header, "invalid_argument: Unknown type: LONG"},
      {HeaderBytes("I", 2, "INTE") + "1234567", [](IncomingMessage& m) { m.ReadInts("I"); },
       kShort},
      {HeaderBytes("D", uint64_t{1} << 61, "DOUB"), doubles, kShort},
      {HeaderBytes("S", uint64_t{1} << 61, "CSTR"), strings, kShort},
      {HeaderBytes("S", 1, "CSTR") + Word(~uint64_t{0}) + "text", strings, kShort},
      {Payload({{"D", Ints{1, 2}}}), doubles,
       "length_error: Incorrect header (received: D-2-INTE vs expected: D-2-DOUB)"},
      {Payload({{"END", Marker{1}}}),
       [](IncomingMessage& m) { IncomingMessage::CheckMarker(m.ReadHeader()); },
       "length_error: Incorrect header (received: END-1-MESS vs expected: END-0-MESS)"}};
  for (const Refusal& refusal : refusals) {
    Wire wire(FrameOf(refusal.payload));
    IncomingMessage message = wire.stream.ReceiveMessage();
    EXPECT_EQ(Raised([&] { refusal.read(message); }), refusal.failure);
    EXPECT_EQ(Raised([&] { wire.stream.ReceiveMessage(); }), kStillReceiving);
  }
}

TEST(Codec, ReceivesFramesBeyondWhatIsBelievedOnAClaim) {
  const std::string text(size_t{5} << 20, 'x');
  Wire wire(Frame({{"BIG", Texts{text}}}));
  IncomingMessage message = wire.stream.ReceiveMessage();
  EXPECT_EQ(message.ReadStrings("BIG", 1).front(), text);
  message.EndOfMessage();
}

}  // namespace
}  // namespace gantry::test
