#include "described_toml/near_word.h"

#include <algorithm>
#include <vector>

#include "platform/text.h"

namespace gantry::toml_reader {

namespace {

bool IsSame(char a, char b) {
  return platform::EqualNoCase(std::string_view(&a, 1), std::string_view(&b, 1));
}

}  // namespace

size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> cost(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) {
    for (size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        cost[i][j] = i + j;
        continue;
      }
      const size_t change = IsSame(a[i - 1], b[j - 1]) ? 0 : 1;
      cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + change});
      const bool isSwap =
          i > 1 && j > 1 && IsSame(a[i - 1], b[j - 2]) && IsSame(a[i - 2], b[j - 1]);
      if (isSwap) cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
    }
  }
  return cost[a.size()][b.size()];
}

std::string DidYouMean(std::string_view word, std::span<const std::string_view> known) {
  constexpr size_t kLongestWord = 64;
  if (word.empty() || word.size() > kLongestWord) return {};
  size_t least = std::min<size_t>(3, word.size() / 3) + 1;  // as far as a slip of the hand goes
  std::string_view nearest;
  for (const std::string_view candidate : known) {
    const size_t distance = EditDistance(word, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest.empty() ? "" : "; did you mean \"" + std::string(nearest) + "\"?";
}

}  // namespace gantry::toml_reader
