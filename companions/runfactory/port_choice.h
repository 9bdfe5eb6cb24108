#pragma once

#include <cstdint>

#include "runfactory/options.h"

namespace gantry::cluster {

/// A port for the simulator of the session in that place, which no other session's simulator can be
/// given and on which nobody listens here. Throws `LaunchFailed` when there is none.
uint16_t ChoosePort(const Options& options, int place);

}  // namespace gantry::cluster
