#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace gantry {

/// The growing body of one remote message: values in the machine's byte order, one behind the
/// other, without tags. Owns its bytes.
class MessageWriter {
 public:
  void PutInt(int32_t value);
  void PutDouble(double value);
  void PutByte(uint8_t value);
  void PutBytes(std::span<const std::byte> bytes);
  /// A 4-byte length and the characters, without a terminator.
  void PutText(std::string_view text);
  /// Without a count.
  void PutIntArray(std::span<const int32_t> values);
  void PutDoubleArray(std::span<const double> values);

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
