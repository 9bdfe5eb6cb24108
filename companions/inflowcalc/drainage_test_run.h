#pragma once

#include "inflowcalc/inflow_model.h"

namespace gantry::inflow {

/// Restarts the simulator and tests all wells of the model together: they flow at a steady rate
/// until their drainage regions have taken shape between them, then they are shut until the
/// pressure in each region has evened out. Gives the ratio of each well for which the test could
/// tell one. The simulator stands at the end of the test afterwards, its wells shut.
/// Throws `CallbackError` at the first callback that fails.
WellRatios RunWellTest(InflowModel& model);

}  // namespace gantry::inflow
