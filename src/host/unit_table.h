#pragma once

#include <array>
#include <cstdint>

namespace gantry {

/// One row of the table by which the host learns the units of the variables that it is given.
struct HostUnit {
  const char* name;
  uint32_t code;       ///< the variable's code, as the exported variables use it
  uint32_t unitClass;  ///< its class in the host's units database
};

/// In the order in which the host reads it. Frozen.
extern const std::array<HostUnit, 43> HostUnitTable;

}  // namespace gantry
