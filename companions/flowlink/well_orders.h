#pragma once

#include <map>
#include <string>
#include <vector>

#include "flowlink/deck_keywords.h"

namespace gantry::flowlink {

/// What one record of the deck's schedule says of how wells are held.
struct WellOrder {
  double days = 0.0;    ///< since the deck's start
  std::string keyword;  ///< "WCONPROD"
  std::string wells;    ///< a name, or a pattern with stars
  DeckPlace place;
  bool isWhole = false;  ///< all that holds the well, not a part of it
  bool isHistory = false;
  bool isEconomic = false;  ///< by which flow may shut the well; says nothing else
  std::string phase;        ///< what an injector takes; empty for a producer
  std::string mode;         ///< of a whole order, the word of the keyword
  /// The limits that it names, by flow's names, and whether they are given as 0. flow gives 0 for
  /// a limit of 0 and for none alike.
  std::map<std::string, bool> isZero;
  std::string quantity;   ///< that the deck computes (UDQ) and holds the well by, if there is one
  std::string liftTable;  ///< number of the lift table, and what it needs to be read
  std::string liftAmount;

  bool IsForList() const { return wells.size() > 1 && wells[0] == '*'; }
  /// A list of wells may mean any: which ones it holds is flow's to know.
  bool Means(const std::string& well) const;
  /// Of these only a whole one says what kind its wells are.
  bool TellsKind() const { return isWhole && !IsForList(); }
};

/// The orders in a keyword of the schedule; none in one that says nothing of limits or status.
std::vector<WellOrder> OrdersOf(const DeckKeyword& keyword, double days);

/// Whether a name of the deck means the well: itself, or a pattern in which a star stands for any
/// letters and a question mark for one.
bool MeansWell(std::string_view pattern, std::string_view well);

}  // namespace gantry::flowlink
