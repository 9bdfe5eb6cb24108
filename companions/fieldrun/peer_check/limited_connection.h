#pragma once

#include <chrono>
#include <stdexcept>
#include <string>

#include "client/byte_channel.h"
#include "platform/sockets.h"

namespace gantry::fieldrun {

/// The peer has closed the connection, or the system says that it is gone.
class PeerGone : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// Nothing has come for as long as the user has said.
class NoAnswer : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// A controller's end of the wire whose every wait has a limit, and which remembers what came since
/// it last spoke. Throws `PeerGone` and `NoAnswer`. One thread at a time.
class LimitedConnection : public PeerConnection {
 public:
  explicit LimitedConnection(std::chrono::seconds limit) : limit_(limit) {}
  ~LimitedConnection() override { Close(); }
  LimitedConnection(const LimitedConnection&) = delete;
  LimitedConnection& operator=(const LimitedConnection&) = delete;

  /// One knock on the port of this machine; false when nobody answers.
  bool Knock(uint16_t port);
  void Close();

  /// Does nothing on a connection that stands already.
  void Connect(const std::string& host, uint32_t port, uint32_t timeoutSeconds) override;
  void Read(std::span<std::byte> bytes) override;
  void Write(std::span<const std::byte> bytes) override;
  void WriteParts(std::span<const std::span<const std::byte>> parts) override;

  /// The first bytes that came since the last write, for a reader: hexadecimal, then as text.
  std::string ShowReceived() const;

 private:
  platform::SocketLibrary library_;
  std::chrono::seconds limit_;
  platform::SocketHandle socket_ = platform::kInvalidSocket;
  std::string received_;
};

}  // namespace gantry::fieldrun
