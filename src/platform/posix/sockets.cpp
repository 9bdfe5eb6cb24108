#include "platform/sockets.h"

#include <algorithm>
#include <cerrno>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/ip_sockets.h"
#include "platform/posix/descriptor.h"

namespace gantry::platform {

const bool kListenerReusesAddress = true;

namespace {

constexpr int kPauseMilliseconds = 100;
constexpr int kLongestWaitSeconds = 1'000'000;

int Number(SocketHandle socket) { return static_cast<int>(socket); }

/// An interrupted connect goes on by itself; its outcome is asked for here.
int FinishConnect(int descriptor) {
  pollfd waiting = {descriptor, POLLOUT, 0};
  WithoutInterrupts([&] { return ::poll(&waiting, 1, -1); });
  int error = 0;
  socklen_t size = sizeof error;
  if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size) != 0) return kSocketError;
  errno = error;
  return error == 0 ? 0 : kSocketError;
}

class PosixSockets : public IpSockets<int> {
 public:
  bool StartUp() override { return true; }
  void CleanUp() override {}

  SocketHandle OpenTcp() override {
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
  }

  void Close(SocketHandle socket) override { ::close(Number(socket)); }

  bool SetBlocking(SocketHandle socket, bool blocking) override {
    int nonBlocking = blocking ? 0 : 1;
    return ::ioctl(Number(socket), FIONBIO, &nonBlocking) == 0;
  }

  int Connect(SocketHandle socket, uint32_t address, uint16_t port) override {
    const sockaddr_in peer = AddressOf(address, port);
    if (::connect(Number(socket), Generic(peer), sizeof peer) == 0) return 0;
    return errno == EINTR ? FinishConnect(Number(socket)) : kSocketError;
  }

  SocketHandle Accept(SocketHandle socket) override {
    return WithoutInterrupts(
        [&] { return ::accept4(Number(socket), nullptr, nullptr, SOCK_CLOEXEC); });
  }

  int Select(SocketHandle socket, bool orWritable, std::optional<int> limitSeconds) override {
    const auto events = static_cast<short>(orWritable ? POLLIN | POLLOUT : POLLIN);
    pollfd waiting = {Number(socket), events, 0};
    const int limit = limitSeconds ? std::min(*limitSeconds, kLongestWaitSeconds) * 1000 : -1;
    return WithoutInterrupts([&] { return ::poll(&waiting, 1, limit); });
  }

  int64_t Send(SocketHandle socket, std::span<const std::byte> bytes) override {
    return WithoutInterrupts(
        [&] { return ::send(Number(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
  }

  int64_t Receive(SocketHandle socket, std::span<std::byte> bytes) override {
    return WithoutInterrupts([&] { return ::recv(Number(socket), bytes.data(), bytes.size(), 0); });
  }

  int64_t Available(SocketHandle socket) override {
    int available = 0;
    return ::ioctl(Number(socket), FIONREAD, &available) == 0 ? available : kSocketError;
  }

  void PauseOnClosedPeer(SocketHandle socket) override {
    pollfd waiting = {Number(socket), 0, 0};
    // A connection that is gone both ways answers at once, so the pause doesn't rest on it.
    if (::poll(&waiting, 1, kPauseMilliseconds) > 0) ::poll(nullptr, 0, kPauseMilliseconds);
  }

  int LastError() override { return errno; }
  bool IsWouldBlock(int error) override { return error == EWOULDBLOCK || error == EAGAIN; }
  bool IsInProgress(int error) override { return error == EINPROGRESS; }
};

}  // namespace

SocketCalls& SystemSockets() {
  static PosixSockets calls;
  return calls;
}

}  // namespace gantry::platform
