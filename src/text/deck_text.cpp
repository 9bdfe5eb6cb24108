#include "text/deck_text.h"

#include <algorithm>

#include "text/number_text.h"

namespace gantry {

std::optional<double> ParseDeckNumber(std::string text) {
  std::ranges::replace_if(
      text, [](char letter) { return letter == 'D' || letter == 'd'; }, 'e');
  return ParseNumber<double>(std::string_view(text).substr(text.starts_with('+') ? 1 : 0));
}

std::string InCapitals(std::string_view word) {
  std::string text(word);
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return text;
}

}  // namespace gantry
