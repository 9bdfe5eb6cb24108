#include "platform/text.h"

#include <algorithm>

namespace gantry::platform {

namespace {

char LowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool EqualNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerOf(x) == LowerOf(y); });
}

}  // namespace gantry::platform
