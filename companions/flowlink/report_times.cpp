#include "flowlink/report_times.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "described_toml/calendar.h"
#include "flowlink/deck_keywords.h"
#include "flowlink/link_fault.h"
#include "text/number_text.h"

namespace gantry::flowlink {

namespace {

constexpr double kSameTime = 1e-3;  // days

constexpr const char* kMonths[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                   "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

constexpr int kLastYear = 9999;

unsigned MonthOf(const std::string& name) {
  if (name == "JLY") return 7;
  for (unsigned i = 0; i < 12; ++i) {
    if (name == kMonths[i]) return i + 1;
  }
  return 0;
}

int NumberOf(const std::string& text) { return ParseNumber<int>(text).value_or(0); }

std::vector<double> MonthTimes(DeckTime start, double endDays) {
  using namespace std::chrono;
  std::vector<double> times;
  const year_month_day first(floor<days>(start));
  for (int month = 1;; ++month) {
    const year_month next = year_month(first.year(), first.month()) + months(month);
    const double time =
        duration<double>(sys_days(next / 1) - start).count() / toml_reader::kSecondsPerDay;
    if (time >= endDays) return times;
    times.push_back(time);
  }
}

/// Days from the start of the points of a grid, up to and without the end.
std::vector<double> GridTimes(const ReportGrid& grid, DeckTime start, double endDays) {
  if (grid.kind == ReportGrid::Kind::kDeck) return {};
  if (grid.kind == ReportGrid::Kind::kMonth) return MonthTimes(start, endDays);
  std::vector<double> times;
  for (int step = 1; step * grid.days < endDays; ++step) times.push_back(step * grid.days);
  return times;
}

}  // namespace

DeckTime ReadDeckDate(const std::vector<std::string>& record) {
  using namespace std::chrono;
  std::string text;
  for (const std::string& item : record) text += (text.empty() ? "" : " ") + item;
  if (record.size() < 3) throw LinkFault("'" + text + "' is no date");
  const year_month_day date(year(NumberOf(record[2])), month(MonthOf(InCapitals(record[1]))),
                            day(static_cast<unsigned>(NumberOf(record[0]))));
  int clock[3] = {0, 0, 0};
  const bool hasClock = record.size() > 3 && !record[3].empty();
  const bool isClock =
      !hasClock || std::sscanf(record[3].c_str(), "%d:%d:%d", clock, clock + 1, clock + 2) >= 2;
  if (!date.ok() || NumberOf(record[2]) > kLastYear || !isClock)
    throw LinkFault("'" + text + "' is no date");
  return sys_days(date) + hours(clock[0]) + minutes(clock[1]) + seconds(clock[2]);
}

std::string WriteDeckDate(DeckTime time) {
  const auto [year, month, day, hour, minute, second] = toml_reader::DateAfter(time, 0);
  char text[64];
  std::snprintf(text, sizeof text, "%d '%s' %d %02d:%02d:%02d", day, kMonths[month - 1], year, hour,
                minute, second);
  return text;
}

std::vector<double> MergeTimes(const ReportGrid& grid, DeckTime start,
                               const std::vector<double>& ofDeck) {
  std::vector<double> times = ofDeck;
  for (const double time : GridTimes(grid, start, ofDeck.back())) {
    const auto next = std::ranges::lower_bound(ofDeck, time);
    const bool isFirst = next - ofDeck.begin() <= 1;  // the start is no stop
    const double before = isFirst ? HUGE_VAL : time - *(next - 1);
    const double behind = *next - time;
    if (std::min(behind, before) > Closeness(grid, 0.0)) times.push_back(time);
  }
  for (const toml_reader::Date& day : grid.hostDays) {
    const auto length = std::chrono::duration<double>(toml_reader::MidnightOf(day) - start);
    const double time = length.count() / toml_reader::kSecondsPerDay;
    const bool isThere =
        std::ranges::any_of(times, [&](double t) { return std::abs(t - time) < kSameTime; });
    if (time > 0 && time < ofDeck.back() && !isThere) times.push_back(time);
  }
  std::ranges::sort(times);
  return times;
}

double Closeness(const ReportGrid& grid, double step) {
  constexpr double kShare = 0.1;
  constexpr double kMonthDays = 30.0;
  if (grid.kind == ReportGrid::Kind::kMonth) return kShare * kMonthDays;
  return kShare * (grid.kind == ReportGrid::Kind::kDays ? grid.days : step);
}

size_t StopFor(const ReportGrid& grid, const std::vector<double>& stops, double days) {
  const auto at = [&](size_t i) { return std::abs(stops[i] - days); };
  const auto behind = std::ranges::lower_bound(stops, days);
  const size_t next = std::min(static_cast<size_t>(behind - stops.begin()), stops.size() - 1);
  if (next == 0) return next;
  const double step = stops[next] - stops[next - 1];
  const bool isBeforeMeant = at(next - 1) <= Closeness(grid, step) && at(next - 1) < at(next);
  return isBeforeMeant ? next - 1 : next;
}

}  // namespace gantry::flowlink
