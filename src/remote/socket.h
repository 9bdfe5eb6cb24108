#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

#include "platform/read_ahead.h"
#include "platform/sockets.h"

namespace gantry {

/// Where frames of raw bytes are received, one after the other: zero behind the last one. Of the
/// memory only what frames have filled is in use.
class FrameBuffer {
 public:
  explicit FrameBuffer(size_t capacity);

  size_t Capacity() const { return capacity_; }
  std::span<const std::byte> Bytes() const { return {bytes_.get(), capacity_}; }
  /// Clears what the last frame left. The result takes one of that length.
  std::span<std::byte> Prepare(size_t length);

 private:
  struct Free {
    void operator()(std::byte* bytes) const { std::free(bytes); }
  };

  std::unique_ptr<std::byte, Free> bytes_;
  size_t capacity_;
  size_t used_ = 0;
};

/// One TCP connection, shared by its copies; the last copy to die closes it. It carries two kinds
/// of messages, each behind a 4-byte little-endian length: frames of raw bytes, and texts without
/// a terminator (docs/remote-protocol.md).
///
/// Calls block without a time limit. Constructors throw plain character pointers. A connection
/// belongs to one thread at a time. The first socket alive in the process starts the system's
/// socket library and the last one cleans it up, whichever threads they belong to.
class Socket {
 public:
  Socket();
  /// Takes over an accepted connection.
  explicit Socket(platform::SocketHandle handle);
  Socket(const Socket& other);
  /// Shares the other's connection. What this object held before isn't released.
  Socket& operator=(const Socket& other);
  virtual ~Socket();

  /// Closes the connection at once, for all copies.
  void Close();

  /// 0 if all was sent by one call, else 1; a partial send isn't continued.
  int32_t SendFrame(std::span<const std::byte> bytes);
  int32_t SendText(const std::string& text);
  /// Reads one frame into `buffer`. 0 on success. 1 when the peer has closed or failed, or when the
  /// frame is longer than the buffer; then `length` keeps the claim, the body stays unread, and the
  /// connection is out of step. A peer that closes within a body blocks the caller for good.
  int32_t ReceiveFrame(FrameBuffer& buffer, uint32_t& length);
  /// `length` is 0 when no text came: an empty text, a closed connection or a failure. Texts end
  /// at 32767 characters; a longer claim is read on to the end of the connection.
  std::string ReceiveText(int32_t& length);
  /// How many bytes can be read without blocking, -1 on failure.
  int64_t BytesAvailable();
  /// Reads and drops as many. A connection that is closed with bytes unread is reset, and the peer
  /// may lose what was last sent to it.
  void DropAvailable();

  uint32_t dwPerf = 0;             ///< nothing adds to it
  bool WaitBeforeReceive = false;  ///< `ReceiveText` waits before each byte; nothing sets it

 protected:
  platform::SocketHandle Handle() const { return connection_->handle; }
  void ReplaceHandle(platform::SocketHandle handle) { connection_->handle = handle; }

 private:
  struct Connection {
    explicit Connection(platform::SocketHandle socket) : handle(socket) {}
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    platform::SocketHandle handle;
    platform::ReadAhead<4096> ahead;
  };
  enum class Outcome { kByte, kWouldBlock, kNothing };

  /// As the system's call, but for bytes that have been read ahead: those come first.
  int64_t Receive(std::span<std::byte> bytes);
  /// The same, and reads ahead. The result is what was moved into `bytes`.
  int64_t ReceiveAhead(std::span<std::byte> bytes);
  Outcome ReceiveByte(std::byte& byte);

  std::shared_ptr<Connection> connection_;
};

/// A connection that was made from this side.
class SocketClient : public Socket {
 public:
  /// Connects, blocking until the system gives up. Throws a std::string with the reason.
  SocketClient(const std::string& host, uint16_t port);
  /// The same with a time limit.
  SocketClient(const std::string& host, uint16_t port, int32_t timeLimitSeconds);

  bool IsConnected = false;

 private:
  void FinishConnect(int32_t timeLimitSeconds);
};

/// A listening socket on all interfaces. Throws plain character pointers.
class SocketServer : public Socket {
 public:
  SocketServer(uint16_t port, int32_t backlog);

  /// The next peer; null when the socket doesn't block and nobody waits.
  std::unique_ptr<Socket> Accept();
};

/// 0 when a socket can be bound to the port, -2 when it can't, -1 when there is no socket to try
/// with, -3 when the socket library doesn't start. Leaves the library started.
int32_t IsPortFree(uint16_t port);

}  // namespace gantry
