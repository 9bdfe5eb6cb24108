// How a run that was left goes on.

#include <fmt/format.h>

#include "fieldrun/run/coupled_run.h"
#include "fieldrun/run/simulator_start.h"

namespace gantry::fieldrun {

void CoupledRun::Resume(const std::string& driverName, size_t mostSteps, const RunMemory& memory,
                        const std::vector<RunWarning>& warned) {
  BringUpSimulator();
  start_.id = memory.id;
  start_.simulatorDays = memory.simulatorDays;
  start_.doneSteps = memory.steps;
  start_.start = memory.start;
  TakeFacts(driverName, mostSteps);
  CheckSimulatorStands(schedule_.DateBefore(memory.steps));
  if (memory.last.size() != start_.wells.size()) {
    throw CannotResume("The wells of the run aren't those that it has remembered");
  }
  for (const RunWarning& warning : warned) warnings_.Add(warning);
  ConnectWells(*simulatorDay_);
  MakeTotals();
  Remember(memory);
  stopwatch_.Charge(timesOfStart_.wire);
  listener_.Timed(std::nullopt, timesOfStart_);
}

// One that stops only at times of its own may stand further on.
void CoupledRun::CheckSimulatorStands(const Date& day) {
  if (simulatorDay_ && DayNumber(*simulatorDay_) >= DayNumber(day) - 1) return;
  throw CannotResume(
      fmt::format("{} doesn't go on at {}: it {}. A run can be resumed with tanksim and flowlink",
                  start_.simulator, ToText(day),
                  simulatorDay_ ? "begins anew at " + ToText(*simulatorDay_) : "tells no date"));
}

void CoupledRun::Remember(const RunMemory& memory) {
  end_.steps = memory.steps;
  for (const WellLast& last : memory.last) {
    WellStep& well = last_.wells.emplace_back();
    well.point.isOpen = last.isOpen;
    well.uptime = last.uptime;
    well.reported = last.reported;
    well.total = last.total;
  }
  totals_->GoOn(memory.counts);
  state_->GoOn(memory.happenings);
  for (size_t i = 0; i < start_.wells.size(); ++i) {
    const WellSpec& spec = state_->Well(i);
    if (spec.control != start_.wells[i].spec->control) SetControlMode(model_, spec);
  }
}

RunMemory CoupledRun::Memory() const {
  RunMemory memory{start_.id, start_.start, start_.simulatorDays, last_.step + 1, {}, {}, {}};
  for (const WellStep& well : last_.wells) {
    memory.last.push_back({well.point.isOpen, well.uptime, well.reported, well.total});
  }
  memory.counts = totals_->Counts();
  memory.happenings = state_->Happenings();
  return memory;
}

}  // namespace gantry::fieldrun
