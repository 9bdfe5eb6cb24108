#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/byte_channel.h"
#include "platform/port_listeners.h"

namespace gantry {

/// One TCP connection, blocking, with TCP_NODELAY. Closed with the object. One thread at a time.
/// A read takes what has come beyond the bytes asked for along, and keeps it for the next one.
/// Failures are boost::system::system_error with the context "resolve", "close", "set_option",
/// "read" or "write".
class TcpConnection : public PeerConnection {
 public:
  /// `bystanders` are no peers: while one of them listens on the port, a knock counts as refused.
  explicit TcpConnection(platform::Bystanders bystanders = {});
  ~TcpConnection() override;

  /// Looks the host up once (IPv4) and knocks on its port twice a second until somebody answers.
  /// Throws runtime_error "Connection timed out." once the whole seconds gone by exceed the limit.
  void Connect(const std::string& host, uint32_t port, uint32_t timeoutSeconds) override;

  void Read(std::span<std::byte> bytes) override;
  void Write(std::span<const std::byte> bytes) override { WriteParts(std::span(&bytes, 1)); }
  void WriteParts(std::span<const std::span<const std::byte>> parts) override;

  struct Socket;

 private:
  friend class TcpListener;

  platform::Bystanders bystanders_;
  std::unique_ptr<Socket> socket_;
};

/// The other end: a port of 127.0.0.1 on which one peer after another is taken.
class TcpListener {
 public:
  /// Port 0 takes any free one. Throws boost::system::system_error when the port is taken.
  explicit TcpListener(uint16_t port);
  ~TcpListener();

  uint16_t Port() const;
  /// The next peer; null when none has come within the time. A negative limit waits without one.
  std::unique_ptr<TcpConnection> Accept(int timeoutSeconds = -1);

 private:
  struct Acceptor;
  std::unique_ptr<Acceptor> acceptor_;
};

}  // namespace gantry
