#include "host/run_history.h"

#include <algorithm>

namespace gantry::fieldrun {

void RunHistory::Started(const RunStart& runStart) {
  start = runStart;
  wells.resize(start.wells.size());
}

void RunHistory::StepDone(const StepRecord& record) {
  FieldMoment& moment = field.emplace_back();
  if (field.size() > 1) moment.totals = field[field.size() - 2].totals;
  moment.endDays = record.days + record.length;
  moment.rates = SumWells(start.wells, record);
  moment.totals.Add(moment.rates, record.length);
  for (size_t i = 0; i < wells.size(); ++i) AddWell(i, record);
  for (const GroupLimitReport& report : record.groups) AddGroup(report);
}

void RunHistory::AddWell(size_t place, const StepRecord& record) {
  WellHistory& well = wells[place];
  const WellStep& step = record.wells[place];
  const Rates rates = step.point.isOpen ? step.Made() : Rates{};
  const double uptime = 1 - start.wells[place].spec->downtime;
  const double pressure = step.reported ? step.reported->pressure : step.point.pressure;
  well.moments.push_back({step.point.isOpen, pressure, rates});
  well.total += uptime * record.length * rates;
  if (step.point.isOpen) well.daysOpen += uptime * record.length;
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
