#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace gantry::platform {

using SocketHandle = intptr_t;
inline constexpr SocketHandle kInvalidSocket = -1;
inline constexpr int kSocketError = -1;

/// The system's socket calls, one for one. What fails gives `kInvalidSocket`, `kSocketError` or
/// false, with the system's number in `LastError`. A call that a signal interrupts is made again.
/// Start and clean-up are counted by whoever makes sockets, not here.
class SocketCalls {
 public:
  virtual ~SocketCalls() = default;

  virtual bool StartUp() = 0;
  virtual void CleanUp() = 0;

  /// A TCP stream socket over IPv4 that no child process inherits.
  virtual SocketHandle OpenTcp() = 0;
  virtual void Close(SocketHandle socket) = 0;
  virtual bool SetBlocking(SocketHandle socket, bool blocking) = 0;

  /// The first IPv4 address of a host, in network order.
  virtual std::optional<uint32_t> FindHost(const std::string& name) = 0;
  virtual int Connect(SocketHandle socket, uint32_t address, uint16_t port) = 0;
  /// On all interfaces.
  virtual int Bind(SocketHandle socket, uint16_t port) = 0;
  virtual int Listen(SocketHandle socket, int backlog) = 0;
  virtual SocketHandle Accept(SocketHandle socket) = 0;

  /// Waits until the socket is readable, or when `orWritable` until it is either; without a limit
  /// when there is none. Positive when it is, 0 when the time ran out.
  virtual int Select(SocketHandle socket, bool orWritable, std::optional<int> limitSeconds) = 0;
  virtual int64_t Send(SocketHandle socket, std::span<const std::byte> bytes) = 0;
  /// 0 when the peer has closed.
  virtual int64_t Receive(SocketHandle socket, std::span<std::byte> bytes) = 0;
  virtual int64_t Available(SocketHandle socket) = 0;
  /// Lets a moment pass on a socket whose peer has closed, for a reader that goes round on it.
  virtual void PauseOnClosedPeer(SocketHandle socket) = 0;

  virtual int LastError() = 0;
  virtual bool IsWouldBlock(int error) = 0;
  virtual bool IsInProgress(int error) = 0;
};

/// The calls of this system, or what a test has put in their place.
SocketCalls& Sockets();

/// While it lives, `Sockets` answers with another object. For tests, which forward to
/// `SystemSockets` what they don't change.
class SocketCallsOverride {
 public:
  explicit SocketCallsOverride(SocketCalls& calls);
  ~SocketCallsOverride();
  SocketCallsOverride(const SocketCallsOverride&) = delete;
  SocketCallsOverride& operator=(const SocketCallsOverride&) = delete;

 private:
  SocketCalls* previous_;
};

SocketCalls& SystemSockets();

/// Whether a listener asks for the reuse of its address, so that it gets a port that connections of
/// the past still hold. Not on Windows, where the same wish takes a port from who listens on it.
extern const bool kListenerReusesAddress;

/// Keeps the system's socket library started while it lives, beside whoever else has started it.
/// Throws runtime_error when it won't start.
class SocketLibrary {
 public:
  SocketLibrary();
  ~SocketLibrary();
  SocketLibrary(const SocketLibrary&) = delete;
  SocketLibrary& operator=(const SocketLibrary&) = delete;
};

}  // namespace gantry::platform
