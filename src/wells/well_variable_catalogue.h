#pragma once

#include <array>

#include "wells/exported_variables.h"

namespace gantry {

/// The variables that can be exported from a well, in the order in which they are offered. Some
/// labels differ from those of the unit table on purpose.
extern const std::array<WellVariable, 29> WellVariableCatalogue;

}  // namespace gantry
