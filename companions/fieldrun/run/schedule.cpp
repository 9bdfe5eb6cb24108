#include "fieldrun/run/schedule.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

constexpr size_t kMostSteps = 1'000'000;
constexpr double kShortest = 1e-6;  // days; what is shorter than this is a rounding error

double LengthOfRun(const CaseModel& model, const Date& start) {
  const TimeSpec& time = model.time;
  if (time.steps) return std::numeric_limits<double>::infinity();
  if (time.duration) return *time.duration;
  const int days = DayNumber(*time.end) - DayNumber(start);
  if (days <= 0) {
    model.Fail(time.LineOf("end"),
               fmt::format("end lies not after the start of the run, {}", ToText(start)));
  }
  return days;
}

double NextLength(const TimeSpec& time, const Date& start, size_t step) {
  if (time.stepDays > 0) return time.stepDays;
  const int month = static_cast<int>(step);
  return DayNumber(AddMonths(start, month + 1)) - DayNumber(AddMonths(start, month));
}

/// Ends a step where the event's day begins within one.
void EndStepAt(double day, std::vector<double>& lengths) {
  double begin = 0;
  for (auto length = lengths.begin(); length != lengths.end(); begin += *length++) {
    const double within = day - begin;
    if (within <= kShortest) return;
    if (within >= *length - kShortest) continue;
    *length -= within;
    lengths.insert(length, within);
    return;
  }
}

void EndStepsAtEvents(const CaseModel& model, Schedule& schedule) {
  const Date& start = schedule.start;
  const double total = schedule.DaysBefore(schedule.lengths.size());
  for (const EventSpec& event : model.events) {
    if (!event.date) continue;
    const double day = DayNumber(*event.date) - DayNumber(start);
    if (day < 0) {
      model.Fail(event.LineOf("date"),
                 fmt::format("date lies before the start of the run, {}", ToText(start)));
    }
    if (day >= total) {
      model.Fail(event.LineOf("date"),
                 fmt::format("date doesn't lie before the end of the run, {}",
                             ToText(schedule.DateBefore(schedule.lengths.size()))));
    }
    EndStepAt(day, schedule.lengths);
  }
}

}  // namespace

double Schedule::DaysBefore(size_t step) const {
  const auto end = lengths.begin() + static_cast<std::ptrdiff_t>(std::min(step, lengths.size()));
  return std::accumulate(lengths.begin(), end, 0.0);
}

Date Schedule::DateBefore(size_t step) const {
  return FromDayNumber(DayNumber(start) + static_cast<int>(std::floor(DaysBefore(step) + 1e-6)));
}

Schedule PlanSteps(const CaseModel& model, const Date& start) {
  const double total = LengthOfRun(model, start);
  const size_t most = model.time.steps ? static_cast<size_t>(*model.time.steps) : kMostSteps + 1;
  Schedule schedule{start, {}};
  double days = 0;
  while (schedule.lengths.size() < most && total - days > kShortest) {
    const double length = NextLength(model.time, start, schedule.lengths.size());
    schedule.lengths.push_back(std::min(length, total - days));
    days += length;
    if (schedule.lengths.size() > kMostSteps) {
      model.Fail(model.time.line, "the run has more than a million steps");
    }
  }
  EndStepsAtEvents(model, schedule);
  return schedule;
}

}  // namespace gantry::fieldrun
