#pragma once

#include <optional>
#include <string>
#include <vector>

#include "described_toml/calendar.h"
#include "fieldrun/network/inflow_curve.h"

namespace gantry::fieldrun {

/// Something that has come about in a field: an event of the case, or a well that has passed an
/// economic limit.
struct Happening {
  std::optional<size_t> event;  ///< its place in the case
  size_t well = 0;              ///< else the well's place in the run,
  std::string reason;           ///< and what it has passed
};

/// How a well's cumulative volumes are counted. STB, MMscf.
struct WellCount {
  std::string doubt;   ///< why the well is counted by its rates; empty for the simulator's count
  Rates before;        ///< the simulator's count when the run began
  Rates count;         ///< and now
  Rates total;         ///< since the run began
  Rates rates;         ///< at the end of the step before
  double checked = 0;  ///< size of the total at the end of the last step that was reported
};

/// What the next step asks of a well in the last one, as in WellStep.
struct WellLast {
  bool isOpen = false;
  double uptime = 1;
  std::optional<InflowPoint> reported;
  Rates total;
};

/// All that a run has to know of its past to go on behind a step as if it had never stopped, beside
/// the case and the simulator's own state.
struct RunMemory {
  std::string id;                     ///< of the run
  toml_reader::Date start;            ///< of the run
  double simulatorDays = 0;           ///< that the simulator had run before that
  size_t steps = 0;                   ///< that are done
  std::vector<WellLast> last;         ///< in the last of them, in the order of the run
  std::vector<WellCount> counts;      ///< in the same order
  std::vector<Happening> happenings;  ///< in the order in which they came about
};

}  // namespace gantry::fieldrun
