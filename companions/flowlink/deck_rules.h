#pragma once

#include <string>
#include <vector>

#include "flowlink/deck_keywords.h"

namespace gantry::flowlink {

/// Something about a deck that its user should know before a coupled run.
struct DeckFinding {
  DeckPlace place;
  std::string text;
  bool isRefusal = false;  ///< otherwise a warning

  /// "FILE:LINE: KEYWORD ...", with "warning: " before the text of a warning.
  std::string Text() const;
};

/// What is decided by a case or the settings rather than by the keyword alone.
struct DeckRules {
  bool leavesGroupsToDeck = false;
};

/// The sections of a deck, as far as keywords mean something else in each.
enum class DeckSection { kRunspec, kGrid, kProps, kSolution, kSummary, kSchedule };

/// The section that a keyword opens, or the present one.
DeckSection SectionAt(const DeckKeyword& keyword, DeckSection present);

/// What a keyword means for a coupled run, one finding for each keyword and place.
std::vector<DeckFinding> Judge(const DeckKeyword& keyword, DeckSection section,
                               const DeckRules& rules);

}  // namespace gantry::flowlink
