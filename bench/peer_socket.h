#pragma once

#include <memory>

#include "client/byte_channel.h"
#include "platform/read_ahead.h"
#include "platform/sockets.h"

namespace gantry::bench {

/// A connection by the system's plain calls, so that a baseline doesn't rest on what it measures.
/// It sends what is to be written together in one call, reads ahead of what it is asked for, and
/// waits for bytes asleep, or awake by asking time and again. Owns its handle; one thread at a
/// time. Throws runtime_error once the other side has gone.
class PeerSocket : public ByteChannel {
 public:
  PeerSocket(platform::SocketHandle handle, bool spins);
  ~PeerSocket() override;
  PeerSocket(const PeerSocket&) = delete;
  PeerSocket& operator=(const PeerSocket&) = delete;

  void Read(std::span<std::byte> bytes) override;
  void Write(std::span<const std::byte> bytes) override;
  /// Whether bytes are there, without a wait. For a socket that spins.
  bool HasBytes();

 private:
  size_t Receive(std::span<std::byte> bytes);

  platform::SocketHandle handle_;
  platform::ReadAhead<16384> ahead_;
};

/// One that nothing is bound to, on any interface.
uint16_t FreePort();

std::unique_ptr<PeerSocket> ConnectTo(uint16_t port);

/// A port of this machine on which one guest after another is taken.
class PeerListener {
 public:
  explicit PeerListener(uint16_t port);
  ~PeerListener();
  PeerListener(const PeerListener&) = delete;
  PeerListener& operator=(const PeerListener&) = delete;

  std::unique_ptr<PeerSocket> Accept(bool spins);

 private:
  platform::SocketHandle handle_;
};

}  // namespace gantry::bench
