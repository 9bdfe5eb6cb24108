#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace gantry {

/// A read that would leave the bytes of a message.
class MessageOverrun : public std::out_of_range {
 public:
  MessageOverrun() : std::out_of_range("A remote message is shorter than what it claims to hold") {}
};

/// A cursor over the body of a remote message, each read moving it on. It borrows the bytes and
/// never leaves them: what would is a `MessageOverrun`, before anything is allocated for it.
class MessageReader {
 public:
  explicit MessageReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

  int32_t GetInt() { return Get<int32_t>(); }
  double GetDouble() { return Get<double>(); }
  uint8_t GetByte() { return Get<uint8_t>(); }
  void GetBytes(std::span<std::byte> target);
  /// Cut at its first zero byte, while the cursor moves past all of it.
  std::string GetText();
  void GetIntArray(std::span<int32_t> target) { GetBytes(std::as_writable_bytes(target)); }
  void GetDoubleArray(std::span<double> target) { GetBytes(std::as_writable_bytes(target)); }

  /// The next int as the count of elements that take `leastSize` bytes each. A count below zero or
  /// of more elements than there are bytes left for is an overrun.
  size_t GetCount(size_t leastSize);
  /// Fails unless `count` elements of that size can still follow.
  void Require(size_t count, size_t leastSize) const {
    if (count > Remaining() / leastSize) throw MessageOverrun();
  }
  size_t Remaining() const { return bytes_.size() - position_; }

 private:
  template <class Value>
  Value Get() {
    Value value{};
    GetBytes(std::as_writable_bytes(std::span(&value, 1)));
    return value;
  }
  std::span<const std::byte> Take(size_t size);

  std::span<const std::byte> bytes_;
  size_t position_ = 0;
};

}  // namespace gantry
