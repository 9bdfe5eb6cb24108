#pragma once

#include <cstdint>
#include <optional>

namespace gantry {

/// A calendar day at midnight, as a number of days from 31 December 1899, with the word that tells
/// whether it has been set.
struct CalendarDate {
  enum : int32_t { kValid = 0, kInvalid = 2 };

  int64_t DayNumber = 0;
  int32_t Status = kInvalid;

  bool IsValid() const { return Status == kValid; }
};

/// Invalid for numbers that name no day of the calendar.
CalendarDate MakeDate(int32_t day, int32_t month, int32_t year);

void SplitDate(const CalendarDate& date, int32_t& day, int32_t& month, int32_t& year);

/// The days from `from` to `to`, where dates may lie so far apart that no difference is formed.
std::optional<double> DaysBetween(const CalendarDate& from, const CalendarDate& to);

/// The largest difference in days that counts as one, either way.
inline constexpr double kMaxDateDifference = 3615897.0;

}  // namespace gantry
