#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "described_toml/calendar.h"

namespace gantry::flowlink {

/// How far the report steps, at which a controller is heard, lie apart.
struct ReportGrid {
  enum class Kind { kMonth, kDays, kDeck } kind = Kind::kMonth;
  double days = 0.0;                          ///< of kDays
  std::vector<toml_reader::Date> hostDays{};  ///< on which the host wants to be heard, in any grid
};

/// What BASE.afi says: the deck, and who decides what. docs/flowlink.md
struct LinkSettings {
  std::filesystem::path deck;  ///< in the usual keyword form, from the file's own folder
  ReportGrid grid;
  std::vector<std::string> keptLimits;  ///< of the deck's limits, those that hold beside the host's
  std::vector<std::string> wells;       ///< that the host may take over; empty for all
  bool leavesGroupsToDeck = false;      ///< the deck's group limits and network hold
  bool opensShutWells = false;          ///< whether the host may open a well that the deck has shut
  double temperature = 0.0;             ///< of the produced fluids, in the deck's units
  bool hasTemperature = false;
  std::string program = "flow";
  std::vector<std::string> options;  ///< for flow, after the adapter's own
  int secondsForQuestion = 60;
  bool solvesAllRungs = false;  ///< of an inflow sweep, however straight the curves
  bool keepsWayBack = true;     ///< restart files, so that a controller can go back in time
};

/// Throws `LinkFault` "FILE:LINE: reason".
LinkSettings ReadLinkSettings(const std::filesystem::path& file);

/// The keys that the file may have, as text.
std::string SettingsReference();

}  // namespace gantry::flowlink
