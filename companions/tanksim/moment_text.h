#pragma once

#include <nlohmann/json.hpp>

#include "tanksim/tank_run.h"

namespace gantry::simulator {

/// A moment of a run as text, with all its digits: docs/tanksim.md tells the keys.
nlohmann::json ToJson(const RunMoment& moment);
/// Throws a standard exception for what isn't such a text.
RunMoment RunMomentOf(const nlohmann::json& json);

}  // namespace gantry::simulator
