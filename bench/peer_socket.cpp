#include "peer_socket.h"

#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "remote/socket.h"

namespace gantry::bench {
namespace {

using platform::SystemSockets;

void Set(platform::SocketHandle handle, int level, int option) {
  const int on = 1;
  ::setsockopt(static_cast<int>(handle), level, option, &on, sizeof on);
}

}  // namespace

PeerSocket::PeerSocket(platform::SocketHandle handle, bool spins) : handle_(handle) {
  if (handle == platform::kInvalidSocket) throw std::runtime_error("nobody came");
  Set(handle, IPPROTO_TCP, TCP_NODELAY);
  SystemSockets().SetBlocking(handle, !spins);
}

PeerSocket::~PeerSocket() { SystemSockets().Close(handle_); }

/// 0 when none are there and the socket doesn't wait.
size_t PeerSocket::Receive(std::span<std::byte> bytes) {
  const int64_t received = SystemSockets().Receive(handle_, bytes);
  if (received > 0) return static_cast<size_t>(received);
  if (received < 0 && SystemSockets().IsWouldBlock(SystemSockets().LastError())) return 0;
  throw std::runtime_error("the other side has gone");
}

void PeerSocket::Read(std::span<std::byte> bytes) {
  for (bytes = ahead_.Take(bytes); !bytes.empty(); bytes = ahead_.Take(bytes)) {
    const std::span<std::byte> space = ahead_.Space();
    if (bytes.size() >= space.size()) {
      bytes = bytes.subspan(Receive(bytes));
    } else {
      ahead_.Add(Receive(space));
    }
  }
}

void PeerSocket::Write(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const int64_t sent = SystemSockets().Send(handle_, bytes);
    if (sent >= 0) {
      bytes = bytes.subspan(static_cast<size_t>(sent));
    } else if (!SystemSockets().IsWouldBlock(SystemSockets().LastError())) {
      throw std::runtime_error("the other side has gone");
    }
  }
}

bool PeerSocket::HasBytes() {
  if (ahead_.Size() == 0) ahead_.Add(Receive(ahead_.Space()));
  return ahead_.Size() > 0;
}

uint16_t FreePort() {
  for (uint16_t port = 12000; port < 20000; ++port) {
    if (IsPortFree(port) == 0) return port;
  }
  return 0;
}

std::unique_ptr<PeerSocket> ConnectTo(uint16_t port) {
  const platform::SocketHandle handle = SystemSockets().OpenTcp();
  if (SystemSockets().Connect(handle, htonl(INADDR_LOOPBACK), port) != 0) {
    SystemSockets().Close(handle);
    throw std::runtime_error("nobody listens");
  }
  return std::make_unique<PeerSocket>(handle, false);
}

PeerListener::PeerListener(uint16_t port) : handle_(SystemSockets().OpenTcp()) {
  Set(handle_, SOL_SOCKET, SO_REUSEADDR);
  if (SystemSockets().Bind(handle_, port) != 0 || SystemSockets().Listen(handle_, 2) != 0) {
    throw std::runtime_error("can't listen");
  }
}

PeerListener::~PeerListener() { SystemSockets().Close(handle_); }

std::unique_ptr<PeerSocket> PeerListener::Accept(bool spins) {
  constexpr int kSeconds = 60;
  SystemSockets().Select(handle_, false, kSeconds);
  SystemSockets().SetBlocking(handle_, false);
  return std::make_unique<PeerSocket>(SystemSockets().Accept(handle_), spins);
}

}  // namespace gantry::bench
