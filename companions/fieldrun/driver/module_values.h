#pragma once

#include <string>

#include "fieldrun/driver/driver_model.h"

namespace gantry::fieldrun {

/// Writes a property as its user means it. The module reads as far as it finds a number, and keeps
/// some numbers within bounds, in silence: a word where a number is due is a DriverFailure here,
/// and a value that has become another is told on standard error.
void SetProperty(DriverModel& model, const std::string& path, const std::string& value);

/// Why the module would pass over a command in silence: it has none of this name. Empty for one
/// that it knows, and for one that it refuses by itself.
std::string WhyNoCommand(const std::string& command);

}  // namespace gantry::fieldrun
