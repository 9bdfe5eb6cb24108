#pragma once

#include <vector>

#include "flowlink/flow_link.h"
#include "flowlink/well_controls.h"

namespace gantry::flowlink {

/// The ladder of a driver that measures inflow.
struct Sweep {
  std::vector<double> shares;                       ///< of the first rung's rates, for each rung
  std::vector<std::vector<HostControls>> controls;  ///< of each rung behind the first
};

/// What a driver that measures inflow asks, so that it can be asked of flow together.
///
/// A driver sets rates out of reach, reads what the wells give, and then goes down a ladder: of ten
/// rungs, the one after k others holds every well at ((10 - k) / 10) ^ skewness of what it gave at
/// first (src/client/inflow_sweep.h). From the second rung's limits and the first one's values
/// follow all others. Empty when the present limits aren't such a second rung.
Sweep ForeseeSweep(const std::vector<HostControls>& present, const WellValues& before);

}  // namespace gantry::flowlink
