#include "described_toml/calendar.h"

#include <cmath>

#include <fmt/format.h>

#include "boundary/day_zero.h"

namespace gantry::toml_reader {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

year_month_day ToChrono(const Date& date) {
  return std::chrono::year{date.year} / date.month / date.day;
}

Date FromChrono(const year_month_day& date) {
  return {int{date.year()}, static_cast<int>(unsigned{date.month()}),
          static_cast<int>(unsigned{date.day()})};
}

}  // namespace

bool IsValid(const Date& date) {
  return date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31 &&
         ToChrono(date).ok();
}

sys_days MidnightOf(const Date& date) { return ToChrono(date); }

std::array<int32_t, 6> DateAfter(std::chrono::sys_seconds start, double days) {
  const auto time = start + std::chrono::seconds(std::llround(days * kSecondsPerDay));
  const auto midnight = std::chrono::floor<std::chrono::days>(time);
  const auto [year, month, day] = FromChrono(midnight);
  const std::chrono::hh_mm_ss clock(time - midnight);
  return {year,
          month,
          day,
          static_cast<int32_t>(clock.hours().count()),
          static_cast<int32_t>(clock.minutes().count()),
          static_cast<int32_t>(clock.seconds().count())};
}

int DayNumber(const Date& date) { return static_cast<int>((MidnightOf(date) - kDayZero).count()); }

Date FromDayNumber(int number) { return FromChrono(kDayZero + days{number}); }

Date AddMonths(const Date& date, int months) {
  const year_month_day moved = ToChrono(date) + std::chrono::months{months};
  return FromChrono(moved.ok() ? moved : moved.year() / moved.month() / std::chrono::last);
}

std::string ToText(const Date& date) {
  return fmt::format("{:04}-{:02}-{:02}", date.year, date.month, date.day);
}

Date DateOf(const std::string& text) {
  Date date{0, 0, 0};
  std::sscanf(text.c_str(), "%d-%d-%d", &date.year, &date.month, &date.day);
  return date;
}

}  // namespace gantry::toml_reader
