#include "fieldrun/run/run_history.h"

#include <algorithm>
#include <cmath>

namespace gantry::fieldrun {
namespace {

constexpr size_t kMostCurves = 150'000;  // of one well in one step: a hundred megabytes

}  // namespace

void RunHistory::Started(const RunStart& runStart) {
  start = runStart;
  wells.resize(start.wells.size());
}

void RunHistory::StepDone(const StepRecord& record) {
  FieldMoment& moment = field.emplace_back();
  moment.endDays = record.days + record.length;
  moment.rates = SumWells(start.wells, record);
  moment.totals = SumTotals(start.wells, record);
  if (!std::isnan(moment.totals.produced.Size())) totals = moment.totals;
  if (!std::isnan(moment.rates.produced.Size())) rates = moment.rates;
  for (size_t i = 0; i < wells.size(); ++i) AddWell(i, record);
  for (const GroupLimitReport& report : record.groups) AddGroup(record.step, report);
  for (const EventReport& event : record.events) events.emplace_back(record.days, event);
  AddCurves(record);
}

void RunHistory::Timed(std::optional<size_t> step, const StepTimes& stepTimes) {
  if (!step) {
    for (const TimePart& part : kTimeParts) {
      timesOfStart.*part.seconds += stepTimes.*part.seconds;
    }
  }
  if (step) times.resize(std::max(times.size(), *step + 1)), times[*step] = stepTimes;
}

void RunHistory::Ended(const RunEnd& runEnd) {
  end = runEnd;
  hasEnded = true;
}

size_t RunHistory::PlaceOf(const Hold& hold) {
  const auto [found, isNew] = places_.try_emplace(hold, holds.size());
  if (isNew) holds.push_back(hold);
  return found->second;
}

void RunHistory::AddWell(size_t place, const StepRecord& record) {
  WellHistory& well = wells[place];
  const WellStep& step = record.wells[place];
  const double pressure = step.reported ? step.reported->pressure : kUnknownRates.oil;
  if (step.reported) well.pressure = pressure;
  well.moments.push_back(
      {PlaceOf({step.point.limitedBy, step.point.isOpen}), pressure, step.Made()});
  if (!std::isnan(step.total.Size())) well.total = step.total;
  if (step.point.isOpen && step.reported) well.daysOpen += step.uptime * record.length;
}

void RunHistory::AddGroup(size_t step, const GroupLimitReport& report) {
  auto found = std::find_if(groups.begin(), groups.end(), [&](const GroupHistory& group) {
    return group.group == report.group && group.limit == report.limit;
  });
  if (found == groups.end()) {
    found = groups.insert(groups.end(), {report.group, report.limit, {}});
  }
  found->before[step] = report.before;
}

void RunHistory::AddCurves(const StepRecord& record) {
  const auto isSpare = [this](const StepRecord& kept) { return kept.step % stride_ != 0; };
  if (!curves.empty() && isSpare(curves.back())) curves.pop_back();  // it was the last
  if ((curves.size() + 1) * wells.size() > kMostCurves) {
    stride_ *= 2;
    std::erase_if(curves, isSpare);
  }
  curves.push_back(record);
}

}  // namespace gantry::fieldrun
