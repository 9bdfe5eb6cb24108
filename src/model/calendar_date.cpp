#include "model/calendar_date.h"

#include <chrono>
#include <cmath>

#include "boundary/day_zero.h"

namespace gantry {

using namespace std::chrono;

CalendarDate MakeDate(int32_t day, int32_t month, int32_t year) {
  if (day < 1 || day > 31 || month < 1 || month > 12 || year < 1 || year > 9999) return {};
  const year_month_day date(std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return {};
  return {(sys_days(date) - kDayZero).count(), CalendarDate::kValid};
}

void SplitDate(const CalendarDate& date, int32_t& day, int32_t& month, int32_t& year) {
  const year_month_day split(kDayZero + days(date.DayNumber));
  day = static_cast<int32_t>(static_cast<unsigned>(split.day()));
  month = static_cast<int32_t>(static_cast<unsigned>(split.month()));
  year = static_cast<int>(split.year());
}

std::optional<double> DaysBetween(const CalendarDate& from, const CalendarDate& to) {
  if (!from.IsValid() || !to.IsValid()) return std::nullopt;
  const auto difference = static_cast<double>(to.DayNumber - from.DayNumber);
  if (std::abs(difference) > kMaxDateDifference) return std::nullopt;
  return difference;
}

}  // namespace gantry
