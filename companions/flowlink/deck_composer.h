#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "flowlink/link_settings.h"
#include "flowlink/report_times.h"

namespace gantry::flowlink {

/// A deck that stops where a controller is to be heard, made of the user's, and what of it the
/// adapter has to know.
struct ComposedDeck {
  std::string text;
  std::string units;  ///< "FIELD" or "METRIC"
  DeckTime start;
  double oilDensity = 0.0;  ///< at the surface, in the deck's units
  double waterDensity = 0.0;
  double gasDensity = 0.0;
  std::vector<std::pair<std::string, std::string>> injected;  ///< well or pattern, and its phase
  std::vector<double> ends;    ///< days at which the report steps of this run end
  std::vector<double> orders;  ///< days, after the start, at which the deck orders something
};

/// Where an earlier run is taken up again: behind one of its report steps.
struct RestartPoint {
  std::string caseName;  ///< of its files, in the same folder
  int report = 0;        ///< the step's number, from 1
  double days = 0.0;     ///< at its end
};

/// How long the first report step of a run is, which there is before a controller is first heard.
constexpr double kFirstStepDays = 0.0005;

/// Composes the deck around a call of the script of that name, and with the summary vectors; for a
/// run from its start, or from a restart point.
/// Throws `LinkFault` for a deck that can't be read or holds a keyword that leaves a controller no
/// say; what the keywords mean beyond that is flow's to judge.
ComposedDeck ComposeDeck(const LinkSettings& settings, const std::string& script,
                         const std::vector<std::string>& summaryVectors,
                         const std::optional<RestartPoint>& restart = {});

}  // namespace gantry::flowlink
