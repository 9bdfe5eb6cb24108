#include "text/pieces.h"

#include <algorithm>
#include <utility>

namespace gantry {

std::vector<std::string> SplitAt(std::string_view text, std::string_view separators) {
  std::vector<std::string> pieces;
  while (!text.empty()) {
    const size_t end = std::min(text.find_first_of(separators), text.size());
    if (std::string piece(text.substr(0, end)); !IsBlank(piece)) pieces.push_back(std::move(piece));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return pieces;
}

bool IsBlank(const std::string& text) { return text.find_first_not_of(" \t") == std::string::npos; }

}  // namespace gantry
