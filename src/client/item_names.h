#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "client/query_results.h"

namespace gantry {

/// Appends "TOTAL_MOLE_FRACTION[1]" and so on up to the given number of components.
inline void AppendMoleFractionItems(int32_t componentCount, Strings& items) {
  for (int32_t i = 1; i <= componentCount; ++i) {
    items.push_back("TOTAL_MOLE_FRACTION[" + std::to_string(i) + "]");
  }
}

}  // namespace gantry
