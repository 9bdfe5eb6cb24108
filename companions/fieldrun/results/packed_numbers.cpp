#include "fieldrun/results/packed_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include <nlohmann/json.hpp>

namespace gantry::fieldrun {
namespace {

void AppendQuantity(std::string& text, int64_t number) {
  constexpr const char* kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  uint64_t rest =
      number < 0 ? (static_cast<uint64_t>(-number) << 1 | 1) : static_cast<uint64_t>(number) << 1;
  do {
    const uint64_t low = rest & 31;
    rest >>= 5;
    text += kDigits[low | (rest == 0 ? 0 : 32)];
  } while (rest != 0);
}

int ExponentOf(std::span<const double> numbers, int digits) {
  double largest = 0;
  for (const double number : numbers) {
    if (std::isfinite(number)) largest = std::max(largest, std::abs(number));
  }
  return largest == 0 ? 0 : static_cast<int>(std::floor(std::log10(largest))) - digits + 1;
}

}  // namespace

nlohmann::ordered_json Packed(std::span<const double> numbers, int digits,
                              std::span<const size_t> lengths) {
  const int exponent = ExponentOf(numbers, digits);
  const double scale = std::pow(10, std::abs(exponent));  // exact, as a negative power isn't
  std::string text;
  std::vector<int64_t> last(1);  // by place in a row
  size_t row = 0;
  size_t place = 0;
  for (const double number : numbers) {
    while (row < lengths.size() && place == lengths[row]) ++row, place = 0;
    if (place >= last.size()) last.resize(place + 1);
    if (std::isfinite(number)) {
      const int64_t whole = std::llround(exponent < 0 ? number * scale : number / scale);
      AppendQuantity(text, whole - last[place]);
      last[place] = whole;
    } else {
      text += '.';
    }
    if (!lengths.empty()) ++place;
  }
  return {{"e", exponent}, {"v", text}};
}

}  // namespace gantry::fieldrun
