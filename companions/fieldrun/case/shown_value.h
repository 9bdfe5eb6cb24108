#pragma once

#include <string>

#include "fieldrun/case/case_keys.h"

namespace gantry::fieldrun {

/// The value of a row's key as a user reads it, with its unit: "500 Sm3/d", "gas", "none".
std::string ShownValue(const KeyRow<WellSpec>& row, const WellSpec& spec, UnitSystem units);
std::string ShownValue(const KeyRow<GroupSpec>& row, const GroupSpec& spec, UnitSystem units);

}  // namespace gantry::fieldrun
