#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <tuple>

namespace gantry::toml_reader {

inline constexpr double kSecondsPerDay = 86400.0;

/// A calendar day (proleptic Gregorian).
struct Date {
  int year = 1900;
  int month = 1;
  int day = 1;

  bool operator==(const Date&) const = default;
  bool operator<(const Date& other) const {
    return std::tie(year, month, day) < std::tie(other.year, other.month, other.day);
  }
};

bool IsValid(const Date& date);

/// The beginning of a day.
std::chrono::sys_days MidnightOf(const Date& date);

/// Year, month, day, hour, minute and second, `days` after a time.
std::array<int32_t, 6> DateAfter(std::chrono::sys_seconds start, double days);

/// The number by which the module knows a day: days from 31 December 1899.
int DayNumber(const Date& date);
Date FromDayNumber(int number);

/// The same day `months` later, or the last of that month where it has no such day.
Date AddMonths(const Date& date, int months);

/// "2015-01-31".
std::string ToText(const Date& date);
/// The other way round. A text of another form gives a day that isn't valid.
Date DateOf(const std::string& text);

}  // namespace gantry::toml_reader
