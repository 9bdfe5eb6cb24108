#include <array>

#include "platform/text.h"

namespace gantry::platform {

namespace {

/// What Windows-1252 puts at 0x80 to 0x9F. The five bytes that it leaves undefined stand for the
/// control character of the same number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t CodePointOf(unsigned char byte) {
  return byte >= 0x80 && byte <= 0x9F ? kUpperControls[byte - 0x80U] : byte;
}

void AppendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
    return;
  }
  if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
  } else {
    out += static_cast<char>(0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
  }
  out += static_cast<char>(0x80 | (point & 0x3F));
}

/// Cuts the first character off a text; its byte in the code page.
char TakeCharacter(std::string_view& text) {
  const char first = text.front();
  for (unsigned byte = 0x80; static_cast<unsigned char>(first) >= 0x80 && byte <= 0xFF; ++byte) {
    std::string character;
    AppendUtf8(character, CodePointOf(static_cast<unsigned char>(byte)));
    if (!text.starts_with(character)) continue;
    text.remove_prefix(character.size());
    return static_cast<char>(byte);
  }
  text.remove_prefix(1);
  return static_cast<unsigned char>(first) < 0x80 ? first : '?';
}

}  // namespace

std::string CodePageToUtf8(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) AppendUtf8(out, CodePointOf(static_cast<unsigned char>(c)));
  return out;
}

std::string Utf8ToCodePage(std::string_view text) {
  std::string out;
  while (!text.empty()) out += TakeCharacter(text);
  return out;
}

}  // namespace gantry::platform
