#pragma once

#include <span>
#include <string>
#include <string_view>

namespace gantry::toml_reader {

/// The number of letters to change, add, take away or swap with their neighbours until `a` is `b`
/// (optimal string alignment), without regard to case.
size_t EditDistance(std::string_view a, std::string_view b);

/// What to add to a message on a word that isn't known: `; did you mean "max_oil"?`, or nothing
/// where no known word is near.
std::string DidYouMean(std::string_view word, std::span<const std::string_view> known);

}  // namespace gantry::toml_reader
