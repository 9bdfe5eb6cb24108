#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace gantry {

/// A blocking, ordered way for bytes to and from a peer. Both operations move all bytes asked for
/// or throw boost::system::system_error; there is no time limit.
class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  virtual void Read(std::span<std::byte> bytes) = 0;
  virtual void Write(std::span<const std::byte> bytes) = 0;
};

/// A channel that has to be opened to its peer first. May be opened anew, which closes what was.
class PeerConnection : public ByteChannel {
 public:
  virtual void Connect(const std::string& host, uint32_t port, uint32_t timeoutSeconds) = 0;
};

}  // namespace gantry
