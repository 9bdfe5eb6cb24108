#include <cerrno>
#include <cstring>

#include "remote/socket.h"

namespace gantry {

using platform::kInvalidSocket;
using platform::kSocketError;
using platform::SocketHandle;
using platform::Sockets;

namespace {

uint32_t AddressOf(const std::string& host) {
  if (const std::optional<uint32_t> address = Sockets().FindHost(host)) return *address;
  throw "Failed to get host by name (" + host + "): error return " + std::strerror(errno);
}

[[noreturn]] void Fail(const std::string& what) { throw what + ". Socket is not connected"; }

[[noreturn]] void FailConnect() {
  Fail("connect() failed. Last error was " + std::to_string(Sockets().LastError()));
}

bool IsUnderWay(int error) {
  return Sockets().IsWouldBlock(error) || Sockets().IsInProgress(error);
}

}  // namespace

SocketClient::SocketClient(const std::string& host, uint16_t port) {
  const uint32_t address = AddressOf(host);
  Sockets().SetBlocking(Handle(), true);
  if (Sockets().Connect(Handle(), address, port) == kSocketError) FailConnect();
  IsConnected = true;
}

SocketClient::SocketClient(const std::string& host, uint16_t port, int32_t timeLimitSeconds) {
  const uint32_t address = AddressOf(host);
  Sockets().SetBlocking(Handle(), false);
  if (Sockets().Connect(Handle(), address, port) == kSocketError &&
      !IsUnderWay(Sockets().LastError())) {
    FailConnect();
  }
  FinishConnect(timeLimitSeconds);
}

/// An answer of either kind counts as connected, a refusal included: the first transfer tells of
/// it.
void SocketClient::FinishConnect(int32_t timeLimitSeconds) {
  const int ready = Sockets().Select(Handle(), true, timeLimitSeconds);
  if (ready == kSocketError) {
    Fail("select() returned SOCKET_ERROR. Last error was " + std::to_string(Sockets().LastError()));
  }
  if (ready == 0) {
    Fail("select() failed: time limit (" + std::to_string(timeLimitSeconds) + " secs) expired");
  }
  if (ready < 0) Fail("Unknown error: select() returned " + std::to_string(ready));
  IsConnected = true;
  Sockets().SetBlocking(Handle(), true);
}

/// The base has opened a socket already; a second one takes its place, and the first stays open.
SocketServer::SocketServer(uint16_t port, int32_t backlog) {
  const SocketHandle listener = Sockets().OpenTcp();
  if (listener == kInvalidSocket) throw "INVALID_SOCKET";
  ReplaceHandle(listener);
  if (Sockets().Bind(listener, port) == kSocketError) {
    Close();
    throw "INVALID_SOCKET";
  }
  Sockets().Listen(listener, backlog);
}

std::unique_ptr<Socket> SocketServer::Accept() {
  const SocketHandle peer = Sockets().Accept(Handle());
  if (peer != kInvalidSocket) return std::make_unique<Socket>(peer);
  if (Sockets().IsWouldBlock(Sockets().LastError())) return nullptr;
  throw "Invalid Socket";
}

}  // namespace gantry
