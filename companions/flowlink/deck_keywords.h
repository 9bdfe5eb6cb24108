#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "text/deck_text.h"

namespace gantry::flowlink {

/// Where something stands in the user's files.
struct DeckPlace {
  std::string file;
  size_t line = 0;

  std::string Text() const { return file + ":" + std::to_string(line); }
};

struct DeckLine {
  size_t number = 0;  ///< in the keyword's file
  std::string text;   ///< without comment
};

/// One keyword of a deck with its data, as the text stands there without comments.
struct DeckKeyword {
  std::string name;  ///< in capitals, whatever the deck has
  std::string head;  ///< the line that it begins with
  DeckPlace place;
  std::vector<DeckLine> lines;
};

using DeckRecord = std::vector<std::string>;

/// The keywords of a deck in their order, up to its END, included files in place of their INCLUDE.
/// As flow has it, their paths begin at the deck's folder, with the names that PATHS gives. Throws
/// `LinkFault` for a file that can't be read.
std::vector<DeckKeyword> ReadDeckKeywords(const std::filesystem::path& deck);

/// The items of each record; repeated ones ("3*31") stand as often as they count, and a default
/// ("2*") is an empty text.
std::vector<DeckRecord> RecordsOf(const DeckKeyword& keyword);

/// A number in any of a deck's ways, "1.5D0" among them; what is none throws `LinkFault` with the
/// place.
double DeckNumber(const DeckKeyword& keyword, const std::string& item);

/// The item at a column, empty when the record is shorter.
std::string ItemAt(const DeckRecord& record, size_t column);

}  // namespace gantry::flowlink
