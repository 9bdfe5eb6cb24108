#include "described_toml/described_key.h"

#include <algorithm>

namespace gantry::toml_reader {

std::vector<std::string_view> SplitChoices(std::string_view choices) {
  std::vector<std::string_view> words;
  while (!choices.empty()) {
    const size_t end = std::min(choices.find('|'), choices.size());
    words.push_back(choices.substr(0, end));
    choices.remove_prefix(std::min(end + 1, choices.size()));
  }
  return words;
}

}  // namespace gantry::toml_reader
