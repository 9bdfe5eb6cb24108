#include "fieldrun/peer_check/limited_connection.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

constexpr size_t kShown = 48;  ///< bytes

std::string Hexadecimal(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    text += fmt::format("{:02x} ", static_cast<unsigned>(static_cast<unsigned char>(c)));
  }
  return text;
}

}  // namespace

bool LimitedConnection::Knock(uint16_t port) {
  Close();
  platform::SocketCalls& calls = platform::Sockets();
  socket_ = calls.OpenTcp();
  if (socket_ == platform::kInvalidSocket) throw PeerGone("no socket is left on this machine");
  const uint32_t loopback = std::bit_cast<uint32_t>(std::array<uint8_t, 4>{127, 0, 0, 1});
  if (calls.Connect(socket_, loopback, port) == 0) return true;
  Close();
  return false;
}

void LimitedConnection::Close() {
  const auto socket = std::exchange(socket_, platform::kInvalidSocket);
  if (socket != platform::kInvalidSocket) platform::Sockets().Close(socket);
}

void LimitedConnection::Connect(const std::string& /*host*/, uint32_t port, uint32_t /*seconds*/) {
  if (socket_ == platform::kInvalidSocket && !Knock(static_cast<uint16_t>(port))) {
    throw PeerGone("nobody listens on the port");
  }
}

void LimitedConnection::Read(std::span<std::byte> bytes) {
  platform::SocketCalls& calls = platform::Sockets();
  while (!bytes.empty()) {
    if (calls.Select(socket_, false, static_cast<int>(limit_.count())) == 0) {
      throw NoAnswer(fmt::format("no answer within {} s (--limit waits longer)", limit_.count()));
    }
    const int64_t got = calls.Receive(socket_, bytes);
    if (got <= 0) throw PeerGone("it has closed the connection");
    const auto* const first = reinterpret_cast<const char*>(bytes.data());
    const size_t room = kShown - std::min(kShown, received_.size());
    received_.append(first, std::min(room, static_cast<size_t>(got)));
    bytes = bytes.subspan(static_cast<size_t>(got));
  }
}

void LimitedConnection::Write(std::span<const std::byte> bytes) {
  received_.clear();
  while (!bytes.empty()) {
    const int64_t sent = platform::Sockets().Send(socket_, bytes);
    if (sent <= 0) throw PeerGone("it has closed the connection");
    bytes = bytes.subspan(static_cast<size_t>(sent));
  }
}

// In one piece: the system would keep the second of two small ones back for a while.
void LimitedConnection::WriteParts(std::span<const std::span<const std::byte>> parts) {
  std::vector<std::byte> whole;
  for (const auto part : parts) whole.insert(whole.end(), part.begin(), part.end());
  Write(whole);
}

std::string LimitedConnection::ShowReceived() const {
  if (received_.empty()) return "";
  std::string text = received_;
  std::ranges::replace_if(
      text, [](char c) { return c < ' ' || c > '~'; }, '.');
  return Hexadecimal(received_) + " " + text;
}

}  // namespace gantry::fieldrun
