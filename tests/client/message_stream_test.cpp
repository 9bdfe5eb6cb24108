#include "client/message_stream.h"

#include <functional>
#include <tuple>

#include <gtest/gtest.h>

#include "support/memory_connection.h"
#include "support/raised.h"
#include "support/wire_entries.h"

namespace gantry::test {
namespace {

constexpr const char* kShort = "length_error: Not enough data read from network";
constexpr const char* kStillReceiving =
    "logic_error: Cannot receive a message as the previous message is still on going.";

constexpr const char* kStillSending =
    "logic_error: Cannot create a new out-going message as the previous message is still on going.";

struct Wire {
  explicit Wire(std::string incoming = {}) : connection(std::move(incoming)) {}

  MemoryConnection connection;
  MessageStream stream{connection};
};

TEST(Codec, WritesEveryKindOfEntryToTheByte) {
  const Texts texts = {"", "two"};
  const Ints ints = {-1, 7};
  const Numbers numbers = {0.25, -1e300};
  Wire wire;
  wire.stream.CreateOutgoingMessage()
      .AppendMarker("SETUP")
      .AppendString("VERSION", "V2")
      .AppendMarker("END")
      .Send();
  const std::string zero(8, '\0');
  const std::string setup = Word(64) + Word(64) + "\5SETUP" + zero + "MESS" + "\7VERSION" +
                            Word(1) + "CSTR" + Word(2) + "V2" + "\3END" + zero + "MESS";
  EXPECT_EQ(wire.connection.outgoing, setup);
  wire.stream.CreateOutgoingMessage()
      .AppendInts("I", ints)
      .AppendDoubles("D", numbers)
      .AppendStrings("S", texts)
      .AppendStrings("", {})
      .AppendInt("ONE", 1)
      .AppendDouble("HALF", 0.5)
      .AppendRepeated("E", 2, "two")
      .Send();
  EXPECT_EQ(wire.connection.outgoing, setup + Frame({{"I", ints},
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
    EXPECT_EQ(Raised([&] { send(stream); }), kStillSending);
  }
}

TEST(Codec, RefusesWhatBreaksTheFormatAndBelievesNoMereClaim) {
  using Read = void (*)(IncomingMessage&);
  const Read nothing = [](IncomingMessage&) {};
  const Read header = [](IncomingMessage& m) { m.ReadHeader(); };
  const Read ints = [](IncomingMessage& m) { m.ReadInts("I"); };
  const Read doubles = [](IncomingMessage& m) { m.ReadDoubles("D"); };
  const Read strings = [](IncomingMessage& m) { m.ReadStrings("S"); };
  const Read end = [](IncomingMessage& m) { IncomingMessage::CheckMarker(m.ReadHeader()); };
  const std::string ended =
      "exception: read: " +
      boost::system::errc::make_error_code(boost::system::errc::connection_reset).message();
  const std::string wrong = "length_error: Incorrect ";
  const std::string absurd = Word(uint64_t{1} << 62);
  const std::tuple<std::string, Read, std::string> refusals[] = {
      {Word(10) + Word(4) + "1234" + Word(0), nothing, wrong + "zero chunk length received."},
      {Word(20) + Word(10) + "0123456789" + Word(70000), nothing,
       wrong + "length in header (received: 70000 vs allowed:10)"},
      {Word(5) + Word(6), nothing, wrong + "length in header (received: 6 vs allowed:5)"},
      {Word(5) + Word(5) + "123", nothing, ended},
      {absurd + absurd + "few", nothing, ended},
      {FrameOf(HeaderBytes("NAME", 0, "ME")), header, kShort},
      {FrameOf(HeaderBytes("NAME", 0, "LONG")), header, "invalid_argument: Unknown type: LONG"},
      {FrameOf(HeaderBytes("I", 2, "INTE") + "1234567"), ints, kShort},
      {FrameOf(HeaderBytes("D", uint64_t{1} << 61, "DOUB")), doubles, kShort},
      {FrameOf(HeaderBytes("S", uint64_t{1} << 61, "CSTR")), strings, kShort},
      {FrameOf(HeaderBytes("S", 1, "CSTR") + Word(~uint64_t{0}) + "text"), strings, kShort},
      {Frame({{"D", Ints{1, 2}}}), doubles,
       wrong + "header (received: D-2-INTE vs expected: D-2-DOUB)"},
      {Frame({{"END", Marker{1}}}), end,
       wrong + "header (received: END-1-MESS vs expected: END-0-MESS)"}};
  for (const auto& [bytes, read, failure] : refusals) {
    Wire wire(bytes);
    EXPECT_EQ(Raised([&] {
                IncomingMessage message = wire.stream.ReceiveMessage();
                read(message);
              }),
              failure);
    EXPECT_EQ(Raised([&] { wire.stream.ReceiveMessage(); }), kStillReceiving);
    EXPECT_LE(wire.connection.largestRead, size_t{1} << 20) << "storage was found for a claim";
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
