#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace gantry::platform {

/// What has been received of a connection and not been asked for yet. One thread at a time.
template <size_t Capacity>
class ReadAhead {
 public:
  size_t Size() const { return end_ - begin_; }
  void Clear() { begin_ = end_ = 0; }

  /// Moves what is here into `target`, as much as fits; the result is what is left of the target.
  std::span<std::byte> Take(std::span<std::byte> target) {
    const size_t size = std::min(Size(), target.size());
    std::copy_n(bytes_.begin() + begin_, size, target.begin());
    begin_ += size;
    return target.subspan(size);
  }

  /// Where the next bytes go. What is here moves to the front.
  std::span<std::byte> Space() {
    std::copy(bytes_.begin() + begin_, bytes_.begin() + end_, bytes_.begin());
    end_ = Size();
    begin_ = 0;
    return std::span(bytes_).subspan(end_);
  }
  /// So many bytes have been received into the space.
  void Add(size_t size) { end_ += size; }

 private:
  std::array<std::byte, Capacity> bytes_;
  size_t begin_ = 0;
  size_t end_ = 0;
};

}  // namespace gantry::platform
