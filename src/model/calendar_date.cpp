#include "model/calendar_date.h"

namespace gantry {

using namespace std::chrono;

CalendarDate MakeDate(int32_t day, int32_t month, int32_t year) {
  if (day < 1 || day > 31 || month < 1 || month > 12 || year < 1 || year > 9999) return {};
  const year_month_day date(std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  return date.ok() ? CalendarDate(date) : std::nullopt;
}

}  // namespace gantry
