#pragma once

#include <array>
#include <cstdint>

namespace gantry::simulator {

/// Year, month, day, hour, minute and second, `days` after the beginning of a date.
std::array<int32_t, 6> DateAfter(const std::array<int32_t, 3>& start, double days);
/// False for a date that no calendar has.
bool IsDate(const std::array<int32_t, 3>& date);

}  // namespace gantry::simulator
