#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "described_toml/finding.h"
#include "tanksim/deck.h"

namespace gantry::simulator {

using DeckError = toml_reader::FileError;

/// Reads and checks a deck: docs/tanksim.md tells its form. Throws `DeckError`, which
/// tells all faults.
Deck ReadDeck(const std::filesystem::path& file);
Deck ReadDeckText(std::string_view text, const std::string& fileName);

/// The keys that a deck may have, with units, ranges and meaning, as text.
std::string DeckReference();

}  // namespace gantry::simulator
