#include "remote/socket.h"

#include <atomic>
#include <cerrno>
#include <thread>

#include <gtest/gtest.h>

#include "remote/passing_calls.h"
#include "remote/wire_bytes.h"
#include "socket_errors.h"
#include "support/free_ports.h"
#include "support/scripted_peer.h"

namespace gantry {
namespace {

using platform::SocketHandle;
using test::Framed;
using test::Int;
using test::PassingCalls;
using test::ScriptedPeer;

/// What a call throws, the socket layer's own manner: plain and text objects.
template <class Call>
std::string Thrown(Call call) {
  try {
    call();
  } catch (const char* text) {
    return text;
  } catch (const std::string& text) {
    return text;
  }
  return "nothing";
}

SocketClient ConnectTo(const ScriptedPeer& peer) { return {"127.0.0.1", peer.Port()}; }

struct Frame {
  int32_t result;
  uint32_t length;
  std::string buffer;
};

Frame ReceiveFrame(Socket& socket, size_t capacity) {
  std::vector<std::byte> buffer(capacity, std::byte{'x'});
  uint32_t length = 0;
  const int32_t result = socket.ReceiveFrame(buffer, length);
  return {result, length, {reinterpret_cast<const char*>(buffer.data()), buffer.size()}};
}

TEST(Socket, IsCountedFromTheFirstToTheLastAndForGoodWhenItIsAssignedTo) {
  class Counting : public PassingCalls {
   public:
    bool StartUp() override {
      ++starts;
      return works && PassingCalls::StartUp();
    }
    void CleanUp() override {
      ++cleanUps;
      PassingCalls::CleanUp();
    }
    SocketHandle OpenTcp() override { return opened = PassingCalls::OpenTcp(); }
    void Close(SocketHandle socket) override {
      ++closed;
      PassingCalls::Close(socket);
    }
    bool works = true;
    int starts = 0, cleanUps = 0, closed = 0;
    SocketHandle opened = platform::kInvalidSocket;
  } calls;
  const platform::SocketCallsOverride override(calls);
  for (int life = 1; life <= 2; ++life) {
    const auto first = std::make_unique<Socket>();
    const Socket copy = *first;
    EXPECT_EQ(calls.starts, life);
    EXPECT_EQ(calls.cleanUps, life - 1);
  }
  EXPECT_EQ(calls.cleanUps, 2);
  calls.works = false;
  EXPECT_EQ(Thrown([] { Socket(); }), "Could not start WSA");
  EXPECT_EQ(IsPortFree(0), -3);
  calls.works = true;
  {
    Socket first;
    const SocketHandle abandoned = calls.opened;
    first = Socket();
    EXPECT_EQ(calls.closed, 2) << "what it held is not released";
    platform::SystemSockets().Close(abandoned);
  }
  EXPECT_EQ(calls.closed, 3);
  EXPECT_EQ(calls.cleanUps, 2) << "and stays in the count";
}

TEST(Socket, IsCountedRightlyByThreadsThatMakeThemBesideEachOther) {
  class Level : public PassingCalls {
   public:
    bool StartUp() override { return Change(1); }
    void CleanUp() override { Change(-1); }
    bool Change(int by) {
      const int now = started += by;
      wasWrong = wasWrong || now < 0 || now > 1;
      return true;
    }
    std::atomic<int> started = 0;
    std::atomic<bool> wasWrong = false;
  } calls;
  const platform::SocketCallsOverride override(calls);
  const auto makeMany = [] {
    for (int i = 0; i < 20000; ++i) const Socket socket(platform::kInvalidSocket);
  };
  std::thread beside(makeMany);
  makeMany();
  beside.join();
  EXPECT_FALSE(calls.wasWrong);
  EXPECT_EQ(calls.started, 0);
}

TEST(Socket, CloseIsSeenByAllCopies) {
  ScriptedPeer peer;
  peer.Start();
  SocketClient first = ConnectTo(peer);
  SocketClient copy = first;
  first.Close();
  peer.Finish();
  EXPECT_EQ(copy.SendText("lost"), 1);
  EXPECT_EQ(copy.BytesAvailable(), -1);
}

TEST(Socket, FramesAreReadUpToTheCapacityIntoAZeroedBuffer) {
  ScriptedPeer peer;
  peer.ReplyBytes(Framed("")).ReplyBytes(Framed("abc")).ReplyBytes(Framed("eight ch"));
  peer.ReplyBytes(Framed("nine char")).Start();
  SocketClient client = ConnectTo(peer);

  const Frame empty = ReceiveFrame(client, 8);
  EXPECT_EQ(empty.result, 0);
  EXPECT_EQ(empty.length, 0u);
  EXPECT_EQ(empty.buffer, std::string(8, '\0'));

  EXPECT_EQ(ReceiveFrame(client, 8).buffer, std::string("abc\0\0\0\0\0", 8));
  EXPECT_EQ(ReceiveFrame(client, 8).buffer, "eight ch");

  const Frame tooLong = ReceiveFrame(client, 8);
  EXPECT_EQ(tooLong.result, 1);
  EXPECT_EQ(tooLong.length, 9u);
  EXPECT_EQ(client.BytesAvailable(), 9) << "the body stays unread";
}

TEST(Socket, FrameWithoutAWholeLengthOrOfTooGreatAOneFails) {
  const std::pair<std::string, uint32_t> cases[] = {{"", 0}, {Int(0xfffffff0), 0xfffffff0}};
  for (const auto& [bytes, length] : cases) {
    ScriptedPeer peer;
    peer.ReplyBytes(bytes).Start();
    SocketClient client = ConnectTo(peer);
    const Frame frame = ReceiveFrame(client, 8);
    EXPECT_EQ(frame.result, 1);
    EXPECT_EQ(frame.length, length);
  }
}

/// Ends the read of a frame, which goes round on a closed peer, by a failure after some rounds.
class BreakingCalls : public PassingCalls {
 public:
  int64_t Receive(SocketHandle socket, std::span<std::byte> bytes) override {
    if (pauses >= 2) return platform::kSocketError;
    const int64_t received = PassingCalls::Receive(socket, bytes);
    if (received == 0) ++closedReads;
    return received;
  }
  void PauseOnClosedPeer(SocketHandle socket) override {
    ++pauses;
    PassingCalls::PauseOnClosedPeer(socket);
  }
  int closedReads = 0;
  int pauses = 0;
};

TEST(Socket, ReaderOnAPeerThatClosedWithinABodyGoesRoundWithAPauseEachTime) {
  BreakingCalls calls;
  ScriptedPeer peer;
  peer.ReplyBytes(Int(8) + "half").Start();
  const platform::SocketCallsOverride override(calls);
  SocketClient client = ConnectTo(peer);
  const Frame frame = ReceiveFrame(client, 8);
  EXPECT_EQ(calls.closedReads, 2);
  EXPECT_EQ(calls.pauses, 2);
  EXPECT_EQ(frame.result, 1);
  EXPECT_EQ(frame.length, 0u);
}

TEST(Socket, TextsAreReadByTheirLength) {
  ScriptedPeer peer;
  peer.ReplyBytes(Framed("one")).ReplyBytes(Framed("")).ReplyBytes(Int(-1) + Framed("two")).Start();
  SocketClient client = ConnectTo(peer);
  int32_t length = 9;
  EXPECT_EQ(client.ReceiveText(length), "one");
  EXPECT_EQ(length, 3);
  EXPECT_EQ(client.ReceiveText(length), "");
  EXPECT_EQ(length, 0);
  EXPECT_EQ(client.ReceiveText(length), "");
  EXPECT_EQ(length, -1);
  client.WaitBeforeReceive = true;
  EXPECT_EQ(client.ReceiveText(length), "two");
}

TEST(Socket, LongestTextIsReadAndALongerOneEndsWithTheConnection) {
  ScriptedPeer peer;
  peer.ReplyBytes(Framed(std::string(32767, 'a'))).ReplyBytes(Framed(std::string(32768, 'b')));
  peer.ReplyBytes(Framed("no next text")).Start();
  SocketClient client = ConnectTo(peer);
  int32_t length = 0;
  EXPECT_EQ(client.ReceiveText(length), std::string(32767, 'a'));
  EXPECT_EQ(length, 32767);
  EXPECT_EQ(client.ReceiveText(length), "");
  EXPECT_EQ(length, 0);
}

TEST(Socket, TextOnASocketThatDoesNotBlockIsWhatHasCome) {
  class ThreeBytes : public PassingCalls {
   public:
    int64_t Receive(SocketHandle socket, std::span<std::byte> bytes) override {
      if (given++ < 4 + 3) return PassingCalls::Receive(socket, bytes);
      return platform::kSocketError;
    }
    bool IsWouldBlock(int) override { return true; }
    int given = 0;
  } calls;
  ScriptedPeer peer;
  peer.ReplyBytes(Framed("abcdef")).Start();
  const platform::SocketCallsOverride override(calls);
  SocketClient client = ConnectTo(peer);
  int32_t length = 0;
  EXPECT_EQ(client.ReceiveText(length), "abc");
  EXPECT_EQ(length, 6);
}

TEST(Socket, PartialSendIsAFailureAndNotContinued) {
  class HalfSend : public PassingCalls {
   public:
    int64_t Send(SocketHandle socket, std::span<const std::byte> bytes) override {
      ++sends;
      return PassingCalls::Send(socket, bytes.first(bytes.size() / 2));
    }
    int sends = 0;
  } calls;
  ScriptedPeer peer;
  peer.ExpectBytes(Int(4)).Start();
  const platform::SocketCallsOverride override(calls);
  SocketClient client = ConnectTo(peer);
  EXPECT_EQ(client.SendText("text"), 1);
  EXPECT_EQ(calls.sends, 1);
}

TEST(Socket, ThatCannotBeOpenedIsInvalid) {
  class NoSocket : public PassingCalls {
   public:
    SocketHandle OpenTcp() override { return platform::kInvalidSocket; }
  } calls;
  const platform::SocketCallsOverride override(calls);
  EXPECT_EQ(Thrown([] { Socket(); }), "INVALID_SOCKET");
  EXPECT_EQ(IsPortFree(0), -1);
}

TEST(SocketClient, TellsAnUnknownHostAndARefusedPort) {
  class Unknown : public PassingCalls {
   public:
    std::optional<uint32_t> FindHost(const std::string&) override {
      errno = ENOENT;
      return std::nullopt;
    }
  } calls;
  {
    const platform::SocketCallsOverride override(calls);
    EXPECT_EQ(Thrown([] { SocketClient("nowhere", 1); }),
              "Failed to get host by name (nowhere): error return No such file or directory");
  }
  class Noting : public PassingCalls {
   public:
    int LastError() override { return noted = PassingCalls::LastError(); }
    int noted = 0;
  } noting;
  const platform::SocketCallsOverride override(noting);
  const std::string text = Thrown([] { SocketClient("127.0.0.1", 1); });
  EXPECT_NE(noting.noted, 0);
  EXPECT_EQ(text, "connect() failed. Last error was " + std::to_string(noting.noted) +
                      ". Socket is not connected");
}

TEST(SocketClient, ConnectsWithATimeLimitAndBlocksAfterwards) {
  ScriptedPeer peer;
  peer.ExpectBytes(Framed("ask")).ReplyBytes(Framed("answer")).Start();
  SocketClient client("127.0.0.1", peer.Port(), 5);
  EXPECT_TRUE(client.IsConnected);
  EXPECT_EQ(client.SendText("ask"), 0);
  int32_t length = 0;
  EXPECT_EQ(client.ReceiveText(length), "answer");
}

TEST(SocketClient, TellsWhatTheWaitForAConnectionGave) {
  class Selecting : public PassingCalls {
   public:
    int Connect(SocketHandle, uint32_t, uint16_t) override { return platform::kSocketError; }
    int LastError() override { return test::kInProgressError; }
    int Select(SocketHandle, bool, std::optional<int> limit) override {
      waited = limit;
      return result;
    }
    int result = 0;
    std::optional<int> waited;
  } calls;
  const platform::SocketCallsOverride override(calls);
  const std::string inProgress = std::to_string(test::kInProgressError);
  const std::vector<std::pair<int, std::string>> cases = {
      {-1, "select() returned SOCKET_ERROR. Last error was " + inProgress},
      {0, "select() failed: time limit (7 secs) expired"},
      {-2, "Unknown error: select() returned -2"},
  };
  for (const auto& [result, text] : cases) {
    calls.result = result;
    EXPECT_EQ(Thrown([] { SocketClient("127.0.0.1", 1, 7); }), text + ". Socket is not connected");
    EXPECT_EQ(calls.waited, 7);
  }
}

TEST(SocketServer, TakesOnePeerAfterAnother) {
  const uint16_t port = static_cast<uint16_t>(test::FreePorts());
  SocketServer server(port, 5);
  SocketClient client("127.0.0.1", port);
  const std::unique_ptr<Socket> accepted = server.Accept();
  EXPECT_EQ(client.SendText("hello"), 0);
  int32_t length = 0;
  EXPECT_EQ(accepted->ReceiveText(length), "hello");
}

TEST(SocketServer, AcceptGivesNothingWhenNobodyWaitsAndThrowsOnFailure) {
  class Refusing : public PassingCalls {
   public:
    SocketHandle Accept(SocketHandle) override { return platform::kInvalidSocket; }
    bool IsWouldBlock(int) override { return nobodyWaits; }
    bool nobodyWaits = true;
  } calls;
  SocketServer server(static_cast<uint16_t>(test::FreePorts()), 5);
  const platform::SocketCallsOverride override(calls);
  EXPECT_EQ(server.Accept(), nullptr);
  calls.nobodyWaits = false;
  EXPECT_EQ(Thrown([&] { server.Accept(); }), "Invalid Socket");
}

TEST(SocketServer, OnATakenPortIsInvalid) {
  const uint16_t port = static_cast<uint16_t>(test::FreePorts());
  EXPECT_EQ(IsPortFree(port), 0);
  const SocketServer server(port, 5);
  EXPECT_EQ(IsPortFree(port), -2);
  EXPECT_EQ(Thrown([&] { SocketServer(port, 5); }), "INVALID_SOCKET");
}

}  // namespace
}  // namespace gantry
