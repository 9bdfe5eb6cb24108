#include "tanksim/calendar.h"

#include <chrono>
#include <cmath>

namespace gantry::simulator {

namespace {

std::chrono::year_month_day DateOf(const std::array<int32_t, 3>& date) {
  return {std::chrono::year(date[0]), std::chrono::month(static_cast<unsigned>(date[1])),
          std::chrono::day(static_cast<unsigned>(date[2]))};
}

}  // namespace

std::array<int32_t, 6> DateAfter(const std::array<int32_t, 3>& start, double days) {
  const std::chrono::seconds elapsed(std::llround(days * 86400.0));
  const std::chrono::days whole = std::chrono::floor<std::chrono::days>(elapsed);
  const std::chrono::year_month_day date(std::chrono::sys_days(DateOf(start)) + whole);
  const std::chrono::hh_mm_ss time(elapsed - whole);
  return {static_cast<int>(date.year()),
          static_cast<int32_t>(static_cast<unsigned>(date.month())),
          static_cast<int32_t>(static_cast<unsigned>(date.day())),
          static_cast<int32_t>(time.hours().count()),
          static_cast<int32_t>(time.minutes().count()),
          static_cast<int32_t>(time.seconds().count())};
}

bool IsDate(const std::array<int32_t, 3>& date) { return DateOf(date).ok(); }

}  // namespace gantry::simulator
