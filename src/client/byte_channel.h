#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace gantry {

/// A blocking, ordered way for bytes to and from a peer. Every operation moves all bytes asked for
/// or throws boost::system::system_error; there is no time limit.
class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  virtual void Read(std::span<std::byte> bytes) = 0;
  virtual void Write(std::span<const std::byte> bytes) = 0;
  /// Writes one part behind the other, in as few calls of the system as the channel can.
  virtual void WriteParts(std::span<const std::span<const std::byte>> parts) {
    for (const std::span<const std::byte> part : parts) Write(part);
  }
};

/// A channel that has to be opened to its peer first. May be opened anew, which closes what was.
class PeerConnection : public ByteChannel {
 public:
  virtual void Connect(const std::string& host, uint32_t port, uint32_t timeoutSeconds) = 0;
};

}  // namespace gantry
