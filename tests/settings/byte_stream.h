#pragma once

#include <cstdint>
#include <string>

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

}  // namespace gantry::test
