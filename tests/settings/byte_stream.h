#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gantry::test {

/// Composes a stream byte by byte, apart from the code under test.
inline std::string Word(uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>((value >> shift) & 0xFF);
  return bytes;
}
inline std::string Text(const std::string& text) {
  return Word(static_cast<uint32_t>(text.size())) + text;
}
inline std::string Header() { return Word(1) + std::string("\x1a\xd2\x5f\x38", 4); }

/// Reads a stream byte by byte, apart from the code under test. Throws where it ends too early.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : bytes_(bytes) {}

  std::string Take(size_t length) {
    if (length > bytes_.size()) throw std::out_of_range("the stream ends too early");
    std::string taken(bytes_.substr(0, length));
    bytes_.remove_prefix(length);
    return taken;
  }
  uint8_t Byte() { return static_cast<uint8_t>(Take(1)[0]); }
  uint32_t Word() {
    uint32_t value = 0;
    for (int shift = 0; shift < 32; shift += 8) value |= uint32_t{Byte()} << shift;
    return value;
  }
  std::string Text() { return Take(Word()); }
  size_t Left() const { return bytes_.size(); }

 private:
  std::string_view bytes_;
};

}  // namespace gantry::test
