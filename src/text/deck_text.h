#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gantry {

// What the readers of keyword decks share.

/// A number in any of a deck's ways, "+1.5D0" among them; none for any other text.
std::optional<double> ParseDeckNumber(std::string text);

/// A keyword counts in whatever letters it is written.
std::string InCapitals(std::string_view word);

}  // namespace gantry
