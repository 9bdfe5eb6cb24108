#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace gantry::flowlink {

/// One keyword of a deck with its data, as the text stands there without comments.
struct DeckKeyword {
  std::string name;
  std::string place;  ///< "FILE:LINE"
  std::vector<std::string> lines;
};

using DeckRecord = std::vector<std::string>;

/// The keywords of a deck in their order, included files in place of their INCLUDE. Throws
/// `LinkFault` for a file that can't be read.
std::vector<DeckKeyword> ReadDeckKeywords(const std::filesystem::path& deck);

/// The items of each record; repeated ones ("3*31") stand as often as they count, and a default
/// ("2*") is an empty text.
std::vector<DeckRecord> RecordsOf(const DeckKeyword& keyword);

}  // namespace gantry::flowlink
