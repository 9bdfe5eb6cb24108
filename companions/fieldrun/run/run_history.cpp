#include "fieldrun/run/run_history.h"

#include <algorithm>
#include <cmath>

namespace gantry::fieldrun {

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
  for (const GroupLimitReport& report : record.groups) AddGroup(report);
}

void RunHistory::Ended(const RunEnd& runEnd) {
  end = runEnd;
  hasEnded = true;
}

void RunHistory::AddWell(size_t place, const StepRecord& record) {
  WellHistory& well = wells[place];
  const WellStep& step = record.wells[place];
  const double pressure = step.reported ? step.reported->pressure : kUnknownRates.oil;
  if (step.reported) well.pressure = pressure;
  well.moments.push_back({step.point.isOpen, pressure, step.Made()});
  if (!std::isnan(step.total.Size())) well.total = step.total;
  if (step.point.isOpen && step.reported) well.daysOpen += step.uptime * record.length;
  well.limitedBy = step.point.limitedBy;
  if (step.inflow.empty()) return;
  well.last = {record.date, step.inflow, step.point, step.gravities};
  if (well.first.inflow.empty()) well.first = well.last;
}

void RunHistory::AddGroup(const GroupLimitReport& report) {
  auto found = std::find_if(groups.begin(), groups.end(), [&](const GroupHistory& group) {
    return group.group == report.group && group.limit == report.limit;
  });
  if (found == groups.end()) {
    found = groups.insert(groups.end(), {report.group, report.limit, 0, 0});
  }
  ++found->steps;
  found->mostBefore = std::max(found->mostBefore, report.before);
}

}  // namespace gantry::fieldrun
