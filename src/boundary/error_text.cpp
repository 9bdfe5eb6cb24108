#include "boundary/error_text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace gantry {

std::string FormatText(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(static_cast<size_t>(std::max(length, 0)), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

void CopyBounded(std::span<char> field, std::string_view text) {
  if (field.empty()) return;
  const size_t length = std::min(text.size(), field.size() - 1);
  std::memcpy(field.data(), text.data(), length);
  field[length] = '\0';
}

void SetErrorText(ExtErrorBlock* err, std::string_view text) {
  if (err != nullptr) CopyBounded(err->text, text);
}

void ClearErrorBlock(ExtErrorBlock* err) {
  if (err != nullptr) std::memset(err, 0, sizeof *err);
}

}  // namespace gantry
