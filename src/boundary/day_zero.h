#pragma once

#include <chrono>

namespace gantry {

/// The day from which the host counts days.
inline constexpr std::chrono::sys_days kDayZero{std::chrono::year(1899) / 12 / 31};

/// The host's number of a day.
constexpr double DayNumber(std::chrono::sys_days day) {
  return static_cast<double>((day - kDayZero).count());
}

}  // namespace gantry
