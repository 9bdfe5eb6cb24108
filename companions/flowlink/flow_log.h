#pragma once

#include <optional>
#include <string>

namespace gantry::flowlink {

/// The last error in what flow has said, on one line; empty when there is none.
std::string LastErrorIn(const std::string& text);

/// The line of the deck that an error of flow's names, as "In DECK line 12" or by a keyword that
/// flow doesn't know; the lines count from 1. Empty when it names none.
std::optional<size_t> LineOfError(const std::string& error, const std::string& deckText);

}  // namespace gantry::flowlink
