#include "fieldrun/case/calendar.h"

#include <chrono>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero{std::chrono::year{1899} / 12 / 31};

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

int DayNumber(const Date& date) {
  return static_cast<int>((sys_days{ToChrono(date)} - kDayZero).count());
}

Date FromDayNumber(int number) { return FromChrono(year_month_day{kDayZero + days{number}}); }

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

}  // namespace gantry::fieldrun
