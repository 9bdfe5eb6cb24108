#include "platform/text.h"

#include <algorithm>

namespace gantry::platform {

namespace {

char LowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// How many bytes a character has that begins with this one; 0 when none does.
size_t LengthBehind(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

}  // namespace

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerOf(x) == LowerOf(y); });
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = LengthBehind(static_cast<unsigned char>(text.front()));
    if (length == 0 || length > text.size()) return false;
    if (!std::ranges::all_of(text.substr(1, length - 1), IsContinuation)) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace gantry::platform
