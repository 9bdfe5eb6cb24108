#include "equipment/date_stamp.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "boundary/day_zero.h"
#include "boundary/error_text.h"

namespace gantry {
namespace {

using namespace std::chrono;

constexpr double kSecondsOfDay = 86400.0;
constexpr double kForgivenSeconds = 0.1;
constexpr sys_days kUnixEpoch{year(1970) / 1 / 1};
constexpr sys_days kFirstDate{year(1) / 1 / 1};
constexpr sys_days kLastDate{year(9999) / 12 / 31};

}  // namespace

double PresentTime() {
  const auto sinceEpoch = system_clock::now().time_since_epoch();
  const auto seconds = duration_cast<std::chrono::seconds>(sinceEpoch).count();
  return static_cast<double>(seconds) / kSecondsOfDay + DayNumber(kUnixEpoch);
}

std::string FormatDateStamp(double time) {
  const double whole = std::floor(time);
  if (!(whole >= DayNumber(kFirstDate) && whole <= DayNumber(kLastDate))) return {};
  const year_month_day date(kDayZero + days(static_cast<int>(whole)));
  const auto seconds = static_cast<int>((time - whole) * kSecondsOfDay + kForgivenSeconds);
  return FormatText("%04d-%02u-%02uT%02d:%02d:%02d.000Z", static_cast<int>(date.year()),
                    static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                    seconds / 3600, seconds / 60 % 60, seconds % 60);
}

double ReadDateStamp(std::string stamp) {
  std::replace_if(
      stamp.begin(), stamp.end(), [](char c) { return c == 'T' || c == 'Z'; }, ' ');
  int y = 0;
  unsigned m = 0;
  unsigned d = 0;
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
  int taken = 0;
  std::sscanf(stamp.c_str(), "%4d-%2u-%2u %2u:%2u:%2u.000%n", &y, &m, &d, &hour, &minute, &second,
              &taken);
  const year_month_day date{year(y), month(m), day(d)};
  if (taken == 0 || !date.ok() || hour > 23 || minute > 59 || second > 59) {
    return EXT_FAILED_NUMBER;
  }
  return DayNumber(date) + (hour * 3600 + minute * 60 + second) / kSecondsOfDay;
}

}  // namespace gantry
