#include "runfactory/driver_connection.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "runfactory/dialogue.h"

namespace gantry::cluster {

namespace {

constexpr size_t kLengthSize = 4;
constexpr uint32_t kLeastRequest = 4;
constexpr uint32_t kLargestRequest = uint32_t{64} << 20;
/// What a request's storage grows by, as far as its bytes really come.
constexpr size_t kBlock = 65536;

/// A machine that vanishes without a word is noticed after about two minutes.
constexpr int kKeepAliveIdleSeconds = 60;
constexpr int kKeepAliveIntervalSeconds = 20;
constexpr int kKeepAliveProbes = 3;

void Set(int socket, int level, int option, int value) {
  ::setsockopt(socket, level, option, &value, sizeof value);
}

}  // namespace

DriverConnection::DriverConnection(platform::Descriptor socket) : socket_(std::move(socket)) {
  const int flags = ::fcntl(socket_.Number(), F_GETFL);
  ::fcntl(socket_.Number(), F_SETFL, flags & ~O_NONBLOCK);
  Set(socket_.Number(), IPPROTO_TCP, TCP_NODELAY, 1);
  Set(socket_.Number(), SOL_SOCKET, SO_KEEPALIVE, 1);
  Set(socket_.Number(), IPPROTO_TCP, TCP_KEEPIDLE, kKeepAliveIdleSeconds);
  Set(socket_.Number(), IPPROTO_TCP, TCP_KEEPINTVL, kKeepAliveIntervalSeconds);
  Set(socket_.Number(), IPPROTO_TCP, TCP_KEEPCNT, kKeepAliveProbes);
}

void DriverConnection::SendText(std::string_view text) {
  const std::string framed = FramedText(text);
  SendAll(std::as_bytes(std::span(framed)));
}

void DriverConnection::SendReply(uint32_t routine, std::span<const std::byte> results) {
  const auto length = static_cast<uint32_t>(sizeof routine + results.size());
  std::vector<std::byte> frame(kLengthSize + length);
  std::memcpy(frame.data(), &length, kLengthSize);
  std::memcpy(frame.data() + kLengthSize, &routine, sizeof routine);
  std::copy(results.begin(), results.end(), frame.begin() + kLengthSize + sizeof routine);
  SendAll(frame);
}

std::span<const std::byte> DriverConnection::Receive() {
  uint32_t length = 0;
  std::span<std::byte> lengthBytes = std::as_writable_bytes(std::span(&length, 1));
  const size_t first = ReceiveSome(lengthBytes);
  if (first == 0) return {};
  for (lengthBytes = lengthBytes.subspan(first); !lengthBytes.empty();) {
    const size_t count = ReceiveSome(lengthBytes);
    if (count == 0) throw DriverBroken("the driver closed within a request");
    lengthBytes = lengthBytes.subspan(count);
  }
  if (length < kLeastRequest || length > kLargestRequest) {
    throw DriverBroken("the driver sent a request of " + std::to_string(length) + " bytes");
  }
  for (size_t received = 0; received < length;) {
    request_.resize(std::max(request_.size(), std::min<size_t>(length, received + kBlock)));
    const size_t room = std::min<size_t>(length, request_.size()) - received;
    const size_t count = ReceiveSome(std::span(request_).subspan(received, room));
    if (count == 0) throw DriverBroken("the driver closed within a request");
    received += count;
  }
  return std::span(request_).first(length);
}

void DriverConnection::SendAll(std::span<const std::byte> bytes) {
  const auto send = [this](const std::byte* next, size_t left) {
    return ::send(socket_.Number(), next, left, MSG_NOSIGNAL);
  };
  if (platform::MoveAll(bytes.data(), bytes.size(), send)) return;
  throw DriverBroken(std::string("cannot send to it: ") + std::strerror(errno));
}

size_t DriverConnection::ReceiveSome(std::span<std::byte> bytes) {
  const ssize_t count = platform::WithoutInterrupts(
      [&] { return ::recv(socket_.Number(), bytes.data(), bytes.size(), 0); });
  if (count < 0) throw DriverBroken(std::string("the driver is lost: ") + std::strerror(errno));
  return static_cast<size_t>(count);
}

}  // namespace gantry::cluster
