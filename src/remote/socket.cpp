#include "remote/socket.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <vector>

#include "platform/lock.h"

namespace gantry {

using platform::kInvalidSocket;
using platform::kSocketError;
using platform::SocketHandle;
using platform::Sockets;

namespace {

constexpr uint32_t kLengthSize = 4;
constexpr int32_t kLongestText = std::numeric_limits<int16_t>::max();

platform::CriticalSection countSection;
int32_t liveSockets GANTRY_GUARDED_BY(countSection) = 0;

void CountSocket() {
  const platform::SingleLock lock(countSection);
  if (liveSockets == 0 && !Sockets().StartUp()) throw "Could not start WSA";
  ++liveSockets;
}

void DiscountSocket() {
  const platform::SingleLock lock(countSection);
  if (--liveSockets == 0) Sockets().CleanUp();
}

/// Opens a socket once the count holds this object; a failure takes the object out of the count.
SocketHandle OpenCounted() {
  CountSocket();
  const SocketHandle handle = Sockets().OpenTcp();
  if (handle != kInvalidSocket) return handle;
  DiscountSocket();
  throw "INVALID_SOCKET";
}

}  // namespace

FrameBuffer::FrameBuffer(size_t capacity)
    : bytes_(static_cast<std::byte*>(std::calloc(capacity, 1))), capacity_(capacity) {
  if (bytes_ == nullptr) throw std::bad_alloc();
}

std::span<std::byte> FrameBuffer::Prepare(size_t length) {
  std::fill_n(bytes_.get(), used_, std::byte{0});
  used_ = length;
  return {bytes_.get(), length};
}

Socket::Connection::~Connection() {
  if (handle != kInvalidSocket) Sockets().Close(handle);
}

Socket::Socket() : connection_(std::make_shared<Connection>(OpenCounted())) {}

Socket::Socket(SocketHandle handle) : connection_(std::make_shared<Connection>(handle)) {
  CountSocket();
}

Socket::Socket(const Socket& other)
    : dwPerf(other.dwPerf),
      WaitBeforeReceive(other.WaitBeforeReceive),
      connection_(other.connection_) {
  CountSocket();
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is released, so it does no harm
Socket& Socket::operator=(const Socket& other) {
  {
    static std::vector<std::shared_ptr<Connection>> neverReleased;
    const platform::SingleLock lock(countSection);
    neverReleased.push_back(connection_);
  }
  dwPerf = other.dwPerf;
  WaitBeforeReceive = other.WaitBeforeReceive;
  connection_ = other.connection_;
  CountSocket();
  return *this;
}

Socket::~Socket() {
  connection_.reset();
  DiscountSocket();
}

// The copies see a closed handle from here on, so that none closes a number which the system has
// given to somebody else by then.
void Socket::Close() {
  if (Handle() == kInvalidSocket) return;
  Sockets().Close(Handle());
  ReplaceHandle(kInvalidSocket);
  connection_->ahead.Clear();
}

int32_t Socket::SendText(const std::string& text) {
  return SendFrame(std::as_bytes(std::span(text)));
}

int32_t Socket::SendFrame(std::span<const std::byte> bytes) {
  std::vector<std::byte> message(kLengthSize + bytes.size());
  const auto length = static_cast<uint32_t>(bytes.size());
  std::memcpy(message.data(), &length, kLengthSize);
  std::copy(bytes.begin(), bytes.end(), message.begin() + kLengthSize);
  return Sockets().Send(Handle(), message) == static_cast<int64_t>(message.size()) ? 0 : 1;
}

int64_t Socket::Receive(std::span<std::byte> bytes) {
  if (connection_->ahead.Size() == 0) return Sockets().Receive(Handle(), bytes);
  return static_cast<int64_t>(bytes.size() - connection_->ahead.Take(bytes).size());
}

int64_t Socket::ReceiveAhead(std::span<std::byte> bytes) {
  auto& ahead = connection_->ahead;
  // It blocks for the first byte alone, as a plain read does.
  if (ahead.Size() == 0 || (ahead.Size() < bytes.size() && Sockets().Available(Handle()) > 0)) {
    const int64_t received = Sockets().Receive(Handle(), ahead.Space());
    if (received > 0) ahead.Add(static_cast<size_t>(received));
    if (ahead.Size() == 0) return received;
  }
  return Receive(bytes);
}

int32_t Socket::ReceiveFrame(FrameBuffer& buffer, uint32_t& length) {
  length = 0;
  if (ReceiveAhead(std::as_writable_bytes(std::span(&length, 1))) < 1) {
    length = 0;
    return 1;
  }
  if (length > buffer.Capacity()) return 1;
  for (std::span<std::byte> missing = buffer.Prepare(length); !missing.empty();) {
    const int64_t received = Receive(missing);
    if (received == kSocketError) {
      length = 0;
      return 1;
    }
    // The caller stays blocked on a peer that has closed; only a failure gets it out.
    if (received == 0) Sockets().PauseOnClosedPeer(Handle());
    missing = missing.subspan(static_cast<size_t>(received));
  }
  return 0;
}

Socket::Outcome Socket::ReceiveByte(std::byte& byte) {
  if (WaitBeforeReceive) Sockets().Select(Handle(), false, std::nullopt);
  const int64_t received = Receive(std::span(&byte, 1));
  if (received == 1) return Outcome::kByte;
  if (received == 0) return Outcome::kNothing;
  return Sockets().IsWouldBlock(Sockets().LastError()) ? Outcome::kWouldBlock : Outcome::kNothing;
}

// The frozen form counts a text's characters in 16 bits: a longer claim is never met, and the read
// goes on until the connection ends it. What could not be handed out isn't kept.
std::string Socket::ReceiveText(int32_t& length) {
  length = 0;
  std::string text;
  std::byte byte{};
  const std::span<std::byte> lengthBytes = std::as_writable_bytes(std::span(&length, 1));
  for (int64_t position = -int64_t{kLengthSize};
       position < 0 || position < length || length > kLongestText; ++position) {
    const Outcome outcome = ReceiveByte(byte);
    if (outcome == Outcome::kWouldBlock) return text;
    if (outcome == Outcome::kNothing) {
      length = 0;
      return {};
    }
    if (position < 0) {
      lengthBytes[static_cast<size_t>(position + kLengthSize)] = byte;
    } else if (position < kLongestText) {
      text.push_back(static_cast<char>(byte));
    }
  }
  return text;
}

int64_t Socket::BytesAvailable() {
  const int64_t inSystem = Sockets().Available(Handle());
  return inSystem < 0 ? inSystem : inSystem + static_cast<int64_t>(connection_->ahead.Size());
}

void Socket::DropAvailable() {
  std::array<std::byte, 4096> dropped;
  while (BytesAvailable() > 0 && Receive(dropped) > 0) {
  }
}

int32_t IsPortFree(uint16_t port) {
  if (!Sockets().StartUp()) return -3;
  const SocketHandle handle = Sockets().OpenTcp();
  if (handle == kInvalidSocket) return -1;
  const int outcome = Sockets().Bind(handle, port);
  Sockets().Close(handle);
  return outcome == kSocketError ? -2 : 0;
}

}  // namespace gantry
