#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace gantry {

/// A day of the calendar, from its midnight on; none where none has been read.
using CalendarDate = std::optional<std::chrono::sys_days>;

/// None for numbers that name no day of the years 1 to 9999.
CalendarDate MakeDate(int32_t day, int32_t month, int32_t year);

/// The largest difference in days that counts as one, either way.
inline constexpr double kMaxDateDifference = 3615897.0;

}  // namespace gantry
