#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gantry {

/// Numbers in the texts that the host sends and gets. They read and print as the C library's
/// conversions do in the C locale, whatever the locale of the process.

/// As `strtod`: the longest number at the start of `text` behind white space, 0 when there is none,
/// an infinity or 0 when it is out of range.
double ReadDouble(std::string_view text);
/// As `strtol` to the base 10, kept within 32 bits.
int32_t ReadInteger(std::string_view text);

/// A text that is a number and nothing else, as `from_chars` takes it; none for any other.
template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

/// As printf's "%g".
std::string FormatDouble(double value);
/// As printf's "%d".
std::string FormatInteger(int32_t value);

}  // namespace gantry
