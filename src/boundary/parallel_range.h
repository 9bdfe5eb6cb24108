#pragma once

#include <cstdint>

namespace gantry {

/// How many processes a simulator may be run with.
inline constexpr int32_t kLeastParallel = 1;
inline constexpr int32_t kMostParallel = 512;

}  // namespace gantry
