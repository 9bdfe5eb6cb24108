#include "remote/socket.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <thread>

#include <boost/asio/error.hpp>
#include <gtest/gtest.h>

#include "remote/passing_calls.h"
#include "remote/wire_bytes.h"
#include "support/free_ports.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

using platform::kSocketError;
using platform::SocketHandle;

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

// With a time limit, after which the socket blocks as one without.
SocketClient ConnectTo(const ScriptedPeer& peer) { return {"127.0.0.1", peer.Port(), 5}; }

/// Result and length of a read, and all of the buffer: "0 3 abc.....".
std::string ReceiveFrame(Socket& socket, FrameBuffer& buffer) {
  uint32_t length = 0;
  std::string text = std::to_string(socket.ReceiveFrame(buffer, length)) + " ";
  text += std::to_string(length) + " ";
  for (const std::byte byte : buffer.Bytes()) text += byte == std::byte{0} ? '.' : char(byte);
  return text;
}

TEST(Socket, IsCountedFromTheFirstToTheLast) {
  bool works = true;
  int starts = 0, cleanUps = 0;
  PassingCalls calls;
  calls.startUp = [&] { return ++starts, works && calls.system.StartUp(); };
  calls.cleanUp = [&] { ++cleanUps, calls.system.CleanUp(); };
  for (int life = 1; life <= 2; ++life) {
    const auto first = std::make_unique<Socket>();
    const Socket copy = *first;
    EXPECT_EQ(starts, life);
    EXPECT_EQ(cleanUps, life - 1);
  }
  EXPECT_EQ(cleanUps, 2);
  works = false;
  EXPECT_EQ(Thrown([] { Socket(); }), "Could not start WSA");
  EXPECT_EQ(IsPortFree(0), -3);
}

/// Ends the process with what became of two sockets, one of which was assigned to the other.
[[noreturn]] void AssignASocket() {
  int closed = 0, cleanUps = 0, closedWhenAssigned = 0;
  PassingCalls calls;
  calls.close = [&](SocketHandle) { ++closed; };
  calls.cleanUp = [&] { ++cleanUps; };
  {
    Socket first;
    first = Socket();
    closedWhenAssigned = closed;
  }
  std::_Exit(100 * closedWhenAssigned + 10 * closed + cleanUps);
}

TEST(SocketDeathTest, ReleasesNeitherWhatItHeldNorItsCountWhenItIsAssignedTo) {
  EXPECT_EXIT(AssignASocket(), testing::ExitedWithCode(10), "");
}

TEST(Socket, IsCountedRightlyByThreadsThatMakeThemBesideEachOther) {
  std::atomic<int> started = 0;
  std::atomic<bool> wasWrong = false;
  const auto change = [&](int by) {
    const int now = started += by;
    wasWrong = wasWrong || now < 0 || now > 1;
    return true;
  };
  PassingCalls calls;
  calls.startUp = [&] { return change(1); };
  calls.cleanUp = [&] { change(-1); };
  const auto makeMany = [] {
    for (int i = 0; i < 20000; ++i) const Socket socket(platform::kInvalidSocket);
  };
  std::thread beside(makeMany);
  makeMany();
  beside.join();
  EXPECT_FALSE(wasWrong);
}

TEST(Socket, FramesAreReadUpToTheCapacityIntoABufferThatIsZeroBehindThem) {
  ScriptedPeer peer;
  peer.ReplyBytes(Text("eight ch") + Text("abc") + Text("") + Text("nine char")).Start();
  SocketClient client = ConnectTo(peer);
  FrameBuffer buffer(8);
  for (const char* frame : {"0 8 eight ch", "0 3 abc.....", "0 0 ........", "1 9 ........"}) {
    EXPECT_EQ(ReceiveFrame(client, buffer), frame);
  }
  EXPECT_EQ(client.BytesAvailable(), 9) << "the body stays unread";
  client.DropAvailable();
  EXPECT_EQ(ReceiveFrame(client, buffer), "1 0 ........") << "the peer has closed";
  SocketClient copy = client;
  client.Close();
  EXPECT_EQ(copy.SendText("lost"), 1) << "all copies see it";
  EXPECT_EQ(copy.BytesAvailable(), -1);
}

TEST(Socket, ReaderOnAPeerThatClosedWithinABodyGoesRoundWithAPauseEachTime) {
  int closedReads = 0, pauses = 0;
  PassingCalls calls;
  calls.receive = [&](SocketHandle socket, std::span<std::byte> bytes) {
    const int64_t received = pauses >= 2 ? kSocketError : calls.system.Receive(socket, bytes);
    if (received == 0) ++closedReads;
    return received;
  };
  calls.pause = [&](SocketHandle socket) { ++pauses, calls.system.PauseOnClosedPeer(socket); };
  ScriptedPeer peer;
  peer.ReplyBytes(Int(8) + "half").Start();
  SocketClient client = ConnectTo(peer);
  FrameBuffer buffer(8);
  EXPECT_TRUE(ReceiveFrame(client, buffer).starts_with("1 0 "));
  EXPECT_EQ(closedReads, 2);
  EXPECT_EQ(pauses, 2);
}

TEST(Socket, TextsAreReadByTheirLengthAndOneThatIsTooLongToTheEndOfTheConnection) {
  ScriptedPeer peer;
  peer.ReplyBytes(Text("one") + Text("") + Int(-1) + Text("two"));
  peer.ReplyBytes(Text(std::string(32767, 'a')) + Text(std::string(32768, 'b')));
  peer.ReplyBytes(Text("no next text")).Start();
  SocketClient client = ConnectTo(peer);
  const std::pair<std::string, int32_t> texts[] = {
      {"one", 3}, {"", 0}, {"", -1}, {"two", 3}, {std::string(32767, 'a'), 32767}, {"", 0}};
  for (const auto& [text, length] : texts) {
    int32_t got = 9;
    EXPECT_EQ(client.ReceiveText(got), text);
    EXPECT_EQ(got, length);
    client.WaitBeforeReceive = true;
  }
}

TEST(Socket, TextOnASocketThatDoesNotBlockIsWhatHasCome) {
  int given = 0;
  PassingCalls calls;
  calls.receive = [&](SocketHandle socket, std::span<std::byte> bytes) {
    return given++ < 4 + 3 ? calls.system.Receive(socket, bytes) : kSocketError;
  };
  calls.isWouldBlock = [] { return true; };
  ScriptedPeer peer;
  peer.ReplyBytes(Text("abcdef")).Start();
  SocketClient client = ConnectTo(peer);
  int32_t length = 0;
  EXPECT_EQ(client.ReceiveText(length), "abc");
  EXPECT_EQ(length, 6);
}

TEST(Socket, PartialSendIsAFailureAndNotContinued) {
  int sends = 0;
  PassingCalls calls;
  calls.send = [&](SocketHandle socket, std::span<const std::byte> bytes) {
    return ++sends, calls.system.Send(socket, bytes.first(bytes.size() / 2));
  };
  ScriptedPeer peer;
  peer.ExpectBytes(Int(4)).Start();
  SocketClient client = ConnectTo(peer);
  EXPECT_EQ(client.SendText("text"), 1);
  EXPECT_EQ(sends, 1);
}

TEST(SocketClient, TellsWhyThereIsNoConnection) {
  {
    PassingCalls calls;
    calls.openTcp = [] { return platform::kInvalidSocket; };
    EXPECT_EQ(Thrown([] { Socket(); }), "INVALID_SOCKET");
    EXPECT_EQ(IsPortFree(0), -1);
  }
  {
    PassingCalls calls;
    calls.findHost = [](const std::string&) {
      errno = ENOENT;
      return std::nullopt;
    };
    EXPECT_EQ(Thrown([] { SocketClient("nowhere", 1); }),
              "Failed to get host by name (nowhere): error return No such file or directory");
  }
  int noted = 0;
  PassingCalls calls;
  calls.lastError = [&] { return noted = calls.system.LastError(); };
  const std::string text = Thrown([] { SocketClient("127.0.0.1", 1); });
  EXPECT_NE(noted, 0);
  EXPECT_EQ(text, "connect() failed. Last error was " + std::to_string(noted) +
                      ". Socket is not connected");
}

TEST(SocketClient, TellsWhatTheWaitForAConnectionGave) {
  constexpr int kInProgress = boost::asio::error::in_progress;
  const std::vector<std::pair<int, std::string>> cases = {
      {-1, "select() returned SOCKET_ERROR. Last error was " + std::to_string(kInProgress)},
      {0, "select() failed: time limit (7 secs) expired"},
      {-2, "Unknown error: select() returned -2"}};
  for (const auto& [result, text] : cases) {
    PassingCalls calls;
    calls.connect = [] { return kSocketError; };
    calls.lastError = [] { return kInProgress; };
    calls.select = [&answer = result](std::optional<int> limit) {
      EXPECT_EQ(limit, 7);
      return answer;
    };
    EXPECT_EQ(Thrown([] { SocketClient("127.0.0.1", 1, 7); }), text + ". Socket is not connected");
  }
}

TEST(SocketServer, TakesOnePeerAfterAnotherOnAPortOfItsOwn) {
  const uint16_t port = static_cast<uint16_t>(FreePorts());
  EXPECT_EQ(IsPortFree(port), 0);
  SocketServer server(port, 5);
  EXPECT_EQ(IsPortFree(port), -2);
  EXPECT_EQ(Thrown([&] { SocketServer(port, 5); }), "INVALID_SOCKET");
  SocketClient client("127.0.0.1", port);
  const std::unique_ptr<Socket> accepted = server.Accept();
  EXPECT_EQ(client.SendText("hello"), 0);
  int32_t length = 0;
  EXPECT_EQ(accepted->ReceiveText(length), "hello");

  PassingCalls calls;
  calls.accept = [] { return platform::kInvalidSocket; };
  calls.isWouldBlock = [] { return true; };
  EXPECT_EQ(server.Accept(), nullptr);
  calls.isWouldBlock = [] { return false; };
  EXPECT_EQ(Thrown([&] { server.Accept(); }), "Invalid Socket");
}

}  // namespace
}  // namespace gantry::test
