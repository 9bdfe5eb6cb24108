#pragma once

#include <optional>
#include <string>
#include <vector>

#include "flowlink/deck_rules.h"
#include "flowlink/link_settings.h"
#include "flowlink/report_times.h"
#include "flowlink/well_controls.h"
#include "flowlink/well_orders.h"

namespace gantry::flowlink {

/// Text in the making that knows from where in the user's files each of its lines comes.
class DeckText {
 public:
  void Append(const std::string& lines);  ///< of the adapter's own; each ends with its newline
  void Append(const DeckKeyword& keyword);

  const std::string& Text() const { return text_; }
  /// By the number of a line, from 1; empty for a line of the adapter's own.
  std::optional<DeckPlace> PlaceOf(size_t line) const;

 private:
  void Append(const std::string& line, const DeckPlace& place);

  /// Lines that follow upon each other in the same way here and there.
  struct Stretch {
    size_t firstLine;
    DeckPlace place;
  };
  std::string text_;
  std::vector<Stretch> stretches_;
  size_t lines_ = 0;
};

/// A deck that stops where a controller is to be heard, made of the user's, and what of it the
/// adapter has to know.
struct ComposedDeck {
  DeckText text;
  std::string units;  ///< "FIELD" or "METRIC"
  DeckTime start;
  DeckFluids fluids;
  double oilDensity = 0.0;  ///< at the surface, in the deck's units
  double waterDensity = 0.0;
  double gasDensity = 0.0;
  std::vector<WellOrder> wellOrders;  ///< what the deck's schedule says of its wells, in its order
  std::vector<DeckFinding> warnings;
  std::vector<double> ends;    ///< days at which the report steps of this run end
  std::vector<double> orders;  ///< days, after the start, at which the deck orders something
};

/// Where an earlier run is taken up again: behind one of its report steps.
struct RestartPoint {
  std::string caseName;  ///< of its files, in the same folder
  int report = 0;        ///< the step's number, from 1
  double days = 0.0;     ///< at its end
};

/// How long the first report step of a run is that is only asked: before a step flow has no wells.
constexpr double kFirstStepDays = 0.0005;

/// Where a run begins, and under what.
struct RunBegin {
  std::optional<RestartPoint> restart;  ///< none for the deck's start
  /// The host's keywords for the first report step. Without them the run is there to be asked only
  /// what its wells would do, and begins with a tiny report step under the deck's.
  std::optional<std::string> orders;
};

/// Composes the deck around a call of the script of that name, and with the summary vectors.
/// Throws `LinkFault` for a deck that can't be read or holds a keyword that can't be coupled; what
/// the keywords mean beyond that is flow's to judge.
ComposedDeck ComposeDeck(const LinkSettings& settings, const std::string& script,
                         const std::vector<std::string>& summaryVectors,
                         const RunBegin& begin = {});

/// All that can be said of a deck without running it; a deck that can't be read on is the last one.
std::vector<DeckFinding> CheckDeck(const LinkSettings& settings);

}  // namespace gantry::flowlink
