#pragma once

#include <chrono>

namespace gantry {

/// The day from which the host counts days.
inline constexpr std::chrono::sys_days kDayZero{std::chrono::year(1899) / 12 / 31};

}  // namespace gantry
