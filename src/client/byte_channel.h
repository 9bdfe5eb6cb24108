#pragma once

#include <cstddef>
#include <span>

namespace gantry {

/// A blocking, ordered way for bytes to and from a peer. Both operations move all bytes asked for
/// or throw boost::system::system_error; there is no time limit.
class ByteChannel {
 public:
  virtual ~ByteChannel() = default;

  virtual void Read(std::span<std::byte> bytes) = 0;
  virtual void Write(std::span<const std::byte> bytes) = 0;
};

}  // namespace gantry
