#include "text/number_text.h"

#include <algorithm>
#include <limits>

namespace gantry {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr int kDefaultPrecision = 6;  // of "%g"

/// Cuts white space and a sign off the start; true when the sign was a minus.
bool TakeSign(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
  const bool negative = text.front() == '-';
  text.remove_prefix(1);
  return negative;
}

bool IsHexadecimalDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Whether "0x" with a digit behind it begins the text; without one the 0 alone is the number.
bool IsHexadecimal(std::string_view text) {
  if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
  text.remove_prefix(2);
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && IsHexadecimalDigit(text.front());
}

/// Whether a number that no double can hold is too large rather than too small: weighs the place of
/// its first digit against its exponent.
bool IsTooLarge(std::string_view number, bool hexadecimal) {
  const size_t mark = std::min(number.find_first_of(hexadecimal ? "pP" : "eE"), number.size());
  const std::string_view digits = number.substr(0, mark);
  const auto point = static_cast<int64_t>(std::min(digits.find('.'), digits.size()));
  const auto first = static_cast<int64_t>(std::min(digits.find_first_not_of("0."), digits.size()));
  const int64_t digitWeight = hexadecimal ? 4 : 1;
  int32_t exponent = 0;
  std::string_view written = number.substr(std::min(mark + 1, number.size()));
  if (written.starts_with('+')) written.remove_prefix(1);
  const auto [end, failure] =
      std::from_chars(written.data(), written.data() + written.size(), exponent);
  if (failure == std::errc::result_out_of_range) return written.front() != '-';
  return (point - first) * digitWeight + exponent > 0;
}

/// The text up to an exponent of two signs, which is none: from_chars would read the second one.
std::string_view WithoutSignedTwice(std::string_view number) {
  const size_t mark = number.find_first_of("pP");
  if (mark == std::string_view::npos || !number.substr(mark + 1).starts_with("+-")) return number;
  return number.substr(0, mark);
}

}  // namespace

double ReadDouble(std::string_view text) {
  const bool negative = TakeSign(text);
  if (text.starts_with('-')) return 0.0;
  const bool hexadecimal = IsHexadecimal(text);
  if (hexadecimal) text = WithoutSignedTwice(text.substr(2));
  double value = 0.0;
  const auto [end, failure] =
      std::from_chars(text.data(), text.data() + text.size(), value,
                      hexadecimal ? std::chars_format::hex : std::chars_format::general);
  if (failure == std::errc::invalid_argument) return 0.0;
  if (failure == std::errc::result_out_of_range) {
    const std::string_view number = text.substr(0, static_cast<size_t>(end - text.data()));
    value = IsTooLarge(number, hexadecimal) ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return negative ? -value : value;
}

int32_t ReadInteger(std::string_view text) {
  const bool negative = TakeSign(text);
  if (text.starts_with('-')) return 0;
  constexpr int64_t kLargest = std::numeric_limits<int32_t>::max();
  int64_t value = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure == std::errc::result_out_of_range) value = kLargest + 1;
  value = std::min(value, kLargest + 1);
  return static_cast<int32_t>(negative ? -value : std::min(value, kLargest));
}

std::string FormatDouble(double value) {
  char text[32];
  const auto result =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDefaultPrecision);
  return std::string(text, result.ptr);
}

std::string FormatInteger(int32_t value) { return std::to_string(value); }

}  // namespace gantry
