#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace gantry {

/// The growing body of one remote message: values in the machine's byte order, one behind the
/// other, without tags. Owns its bytes. What is put can be chained.
class MessageWriter {
 public:
  MessageWriter& PutInt(int32_t value) { return PutIntArray(std::span(&value, 1)); }
  MessageWriter& PutDouble(double value) { return PutDoubleArray(std::span(&value, 1)); }
  MessageWriter& PutByte(uint8_t value) { return PutBytes(std::as_bytes(std::span(&value, 1))); }
  MessageWriter& PutBytes(std::span<const std::byte> bytes);
  /// A 4-byte length and the characters, without a terminator.
  MessageWriter& PutText(std::string_view text);
  /// Without a count.
  MessageWriter& PutIntArray(std::span<const int32_t> values) {
    return PutBytes(std::as_bytes(values));
  }
  MessageWriter& PutDoubleArray(std::span<const double> values) {
    return PutBytes(std::as_bytes(values));
  }

  std::span<const std::byte> Bytes() const { return bytes_; }
  int32_t Used() const { return static_cast<int32_t>(bytes_.size()); }
  /// Grows in steps of 100 and is always greater than what is used. The storage behind it grows
  /// faster, so that a long message stays linear in its length.
  int32_t Capacity() const { return (Used() / kStep + 1) * kStep; }

 private:
  static constexpr int32_t kStep = 100;

  std::vector<std::byte> bytes_;
};

}  // namespace gantry
