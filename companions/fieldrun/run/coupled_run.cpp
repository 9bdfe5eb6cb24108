#include "fieldrun/run/coupled_run.h"

#include <algorithm>
#include <random>

#include <fmt/format.h>

#include "fieldrun/platform/interruption.h"
#include "fieldrun/run/simulator_start.h"
#include "text/failure_text.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

/// The module's gravities, where they can be those of surface fluids; the case's own come first.
Gravities TubingGravities(const NetworkSpec& network, const Gravities& reported) {
  const auto choose = [](const std::optional<double>& own, double value, double low, double high,
                         double fallback) {
    if (own) return *own;
    return value >= low && value <= high ? value : fallback;
  };
  const Gravities usual;
  return {choose(network.oilGravity, reported.oil, 0.3, 1.2, usual.oil),
          choose(network.gasGravity, reported.gas, 0.5, 2.0, usual.gas),
          choose(network.waterGravity, reported.water, 0.9, 1.5, usual.water)};
}

/// The gravities that the tubings should have: the case's own, else the module's.
Gravities WantedGravities(const NetworkSpec& network, const Gravities& reported) {
  return {network.oilGravity.value_or(reported.oil), network.gasGravity.value_or(reported.gas),
          network.waterGravity.value_or(reported.water)};
}

/// Eight characters that no other run has, as far as chance goes.
std::string NewRunId() { return fmt::format("{:08x}", std::random_device()()); }

Date FirstDay(const CaseModel& model, const std::optional<Date>& simulation) {
  const std::optional<Date>& own = model.time.start;
  if (!own && !simulation) {
    model.Fail(model.time.line, "the simulator tells no date, so that [time] needs a start");
  }
  if (own && simulation && *own < *simulation) {
    model.Fail(model.time.LineOf("start"),
               fmt::format("start lies before the simulator's date, {}", ToText(*simulation)));
  }
  return own ? *own : *simulation;
}

}  // namespace

CoupledRun::CoupledRun(const CaseModel& caseModel, DriverModel& model, RunListener& listener)
    : case_(caseModel),
      model_(model),
      listener_(listener),
      checks_(caseModel.Units(), [this](const RunWarning& warning) { Warn(warning); }) {}

void CoupledRun::CheckComposition(const Located& place,
                                  const std::vector<double>& composition) const {
  const size_t count = start_.components.size();
  if (composition.empty() || composition.size() == count) return;
  case_.Fail(place.LineOf("composition"),
             count == 0 ? "composition means nothing for a black-oil dataset"
                        : fmt::format("composition has {} fractions, the simulator {} components",
                                      composition.size(), count));
}

// Without it the run goes on all the same, with totals of its own making.
void CoupledRun::Publish() {
  try {
    PublishTotals(model_, case_);
  } catch (const std::exception&) {
    // WellTotals finds nothing published, and says so
  }
}

void CoupledRun::MakeTotals() {
  const ReadVariable read = [this](int handle) { return ReadDouble(model_.ReadPublished(handle)); };
  totals_ = std::make_unique<WellTotals>(start_.wells, model_.PublishedVariables(), read,
                                         [this](const RunWarning& warning) { Warn(warning); });
}

void CoupledRun::BringUpSimulator() {
  Publish();
  stopwatch_.Charge(timesOfStart_.other);
  {
    const DeafToInterruptions simulator;
    StartSimulator(model_, case_);
  }
  stopwatch_.Charge(timesOfStart_.simulator);
}

void CoupledRun::TakeFacts(const std::string& driverName, size_t mostSteps) {
  start_.program = model_.Get("Intersect.CaseDetails.SimExeName");
  start_.simulator = SimulatorProgram(model_, case_);
  const std::vector<DriverWell> wells = model_.Wells();
  start_.components = model_.ComponentNames();
  simulatorDay_ = model_.SimulationDate();
  if (start_.doneSteps == 0) start_.start = FirstDay(case_, simulatorDay_);
  start_.wells = MatchWells(model_, case_, wells);
  start_.unconnectedWells = static_cast<int>(wells.size() - start_.wells.size());
  start_.driver = driverName;
  start_.deck = model_.Description();
  for (const RunWell& well : start_.wells) CheckComposition(*well.spec, well.spec->composition);
  for (const EventSpec& event : case_.events) {
    CheckComposition(event, event.wellChange.composition);
  }
  schedule_ = PlanSteps(case_, start_.start);
  const size_t most = start_.doneSteps + mostSteps;
  if (mostSteps > 0 && most < schedule_.lengths.size()) schedule_.lengths.resize(most);
  start_.stepCount = schedule_.lengths.size();
  start_.totalDays = schedule_.DaysBefore(start_.stepCount);
  state_ = std::make_unique<FieldState>(case_, start_.wells);
}

// The simulator is run up to a day that lies ahead of it.
void CoupledRun::ConnectWells(const Date& day) {
  std::vector<int32_t> connected;
  for (const RunWell& well : start_.wells) connected.push_back(well.handle);
  for (const int32_t handle : connected) model_.Connect(handle, true);
  stopwatch_.Charge(timesOfStart_.wire);
  listener_.Started(start_);
  stopwatch_.Charge(timesOfStart_.writing);
  model_.StartRun(connected, DayNumber(day),
                  [this](const std::string& text) { listener_.Notice(text); });
  stopwatch_.Charge(timesOfStart_.simulator);
}

void CoupledRun::Start(const std::string& driverName, size_t mostSteps) {
  BringUpSimulator();
  start_.id = NewRunId();
  TakeFacts(driverName, mostSteps);
  if (simulatorDay_) start_.simulatorDays = DayNumber(start_.start) - DayNumber(*simulatorDay_);
  ConnectWells(start_.start);
  MakeTotals();
  totals_->Begin(start_.start);
  stopwatch_.Charge(timesOfStart_.wire);
  listener_.Timed(std::nullopt, timesOfStart_);
}

// The module counts time on from the day on which the simulator came up, which need not be where
// the step begins.
double CoupledRun::LengthForModule(const StepRecord& record) const {
  if (start_.doneSteps == 0 || record.step != start_.doneSteps) return record.length;
  const double simulator = DayNumber(*simulatorDay_) - DayNumber(start_.start);
  return schedule_.DaysBefore(record.step + 1) - simulator;
}

RunEnd CoupledRun::Run() {
  try {
    while (std::optional<StepRecord> step = Next()) Carry(std::move(*step));
  } catch (const std::exception& failure) {
    end_.endedByUser = IsInterrupted();
    return End(FailureText(failure, fmt::format("step {}", end_.steps + 1)));
  }
  return End();
}

std::optional<StepRecord> CoupledRun::Next() {
  if (end_.steps == start_.stepCount || end_.endedBySimulator) return {};
  end_.endedByUser = IsInterrupted();
  if (end_.endedByUser) return {};
  const size_t step = end_.steps;
  listener_.StepBegins(step, schedule_.DateBefore(step));
  if (atStep) atStep(step);
  StepRecord record;
  record.step = step;
  record.date = schedule_.DateBefore(step);
  record.days = schedule_.DaysBefore(step);
  record.length = schedule_.lengths[step];
  stopwatch_.Charge(record.times.other);
  ReadInflow(record);
  Bring(record);
  Solve(record);
  return record;
}

void CoupledRun::Carry(StepRecord record) {
  stopwatch_.Charge(record.times.network);
  SendControls(record);
  if (case_.network.applyEarly) model_.ApplyControls();
  stopwatch_.Charge(record.times.wire);
  end_.endedBySimulator = !model_.Step(LengthForModule(record));
  stopwatch_.Charge(record.times.simulator);
  last_ = std::move(record);
  hasLast_ = true;
  ++end_.steps;
}

RunEnd CoupledRun::End(const std::string& failure) {
  end_.failure = failure;
  ReportRest();
  model_.CloseSimulator();
  end_.warnings = warnings_.All();
  Tell();
  return end_;
}

void CoupledRun::AskForInflow(StepRecord& record) {
  model_.ReadWells();
  inflow_.clear();
  for (const RunWell& well : start_.wells) {
    inflow_.push_back(model_.Inflow(well.handle));
    record.wells.emplace_back().inflow = inflow_.back().points;
  }
}

// The read of one step is at once the result of the step before.
void CoupledRun::ReadInflow(StepRecord& record) {
  try {
    AskForInflow(record);
  } catch (const DriverFailure&) {
    ReportUnread();
    throw;
  }
  stopwatch_.Charge(record.times.sweep);
  for (size_t i = 0; hasLast_ && i < inflow_.size(); ++i) {
    WellStep& well = last_.wells[i];
    const InflowPoint& current = inflow_[i].current;
    if (checks_.Report(start_.wells[i], last_.date, well.point, current)) well.reported = current;
  }
  ReportLast();
}

// What happens before a step, seen from the one before it, and what then holds in it.
void CoupledRun::Bring(StepRecord& record) {
  std::vector<int> controls;
  for (size_t i = 0; i < record.wells.size(); ++i) controls.push_back(state_->Well(i).control);
  record.events = state_->Begin(record.date, record.step > 0 ? &last_ : nullptr);
  for (size_t i = 0; i < record.wells.size(); ++i) {
    WellStep& well = record.wells[i];
    const WellSpec& spec = state_->Well(i);
    if (spec.control != controls[i]) SetControlMode(model_, spec);
    well.uptime = 1 - spec.downtime;
    well.tubing = spec.tubing;
    if (!well.tubing.empty()) well.manifoldPressure = state_->ManifoldPressureOf(i);
    well.artificialLift = spec.artificialLift;
  }
}

void CoupledRun::ReportLast() {
  if (!hasLast_) return;
  hasLast_ = false;
  stopwatch_.Charge(last_.times.other);
  totals_->Count(last_);
  stopwatch_.Charge(last_.times.wire);
  TellLast(true);
}

void CoupledRun::TellLast(bool isWhole) {
  listener_.StepDone(last_);
  if (isWhole) listener_.Remembered(Memory());
  stopwatch_.Charge(last_.times.writing);
  listener_.Timed(last_.step, last_.times);
}

// Not what the network decided counts as made, but nothing.
void CoupledRun::ReportUnread() {
  if (!hasLast_) return;
  hasLast_ = false;
  Warn({"unread", "", last_.date,
        fmt::format("nothing tells the rates of step {}, the last: only what the network decided "
                    "stands in wells.csv",
                    last_.step + 1)});
  TellLast(false);
}

void CoupledRun::FinishLast() {
  if (!hasLast_) return;
  StepRecord after;
  ReadInflow(after);
}

// Listeners that write may find the disk full.
void CoupledRun::Tell() {
  try {
    if (atEnd) atEnd();
    listener_.Ended(end_);
  } catch (const std::exception& failure) {
    if (end_.failure.empty()) end_.failure = FailureText(failure, "the results");
  }
}

// What the last step has made. A simulator that has come to its own end may still tell its totals.
// A run that has failed already keeps its first failure, and the step is reported as unread.
void CoupledRun::ReportRest() {
  if (hasLast_ && end_.endedBySimulator) totals_->Count(last_);
  const bool isSound = end_.failure.empty() && !end_.endedBySimulator;
  try {
    FinishLast();
  } catch (const DriverFailure& failure) {
    if (!isSound) return;
    end_.failure = failure.what();
    end_.endedByUser = IsInterrupted();
  } catch (const std::exception& failure) {
    if (end_.failure.empty()) end_.failure = FailureText(failure, "the last step");
  }
}

void CoupledRun::Warn(const RunWarning& warning) {
  if (warnings_.Add(warning)) listener_.Warned(warning);
}

NetworkWell CoupledRun::WellOfNetwork(size_t place, StepRecord& record) {
  const WellSpec& spec = state_->Well(place);
  const RunWell& runWell = start_.wells[place];
  WellStep& step = record.wells[place];
  checks_.Inflow(runWell, record.date, step.inflow);
  NetworkWell well(spec, InflowCurve(step.inflow, spec.IsProducer()));
  well.tubing = case_.TubingOf(spec);
  well.manifoldPressure = step.manifoldPressure;
  well.artificialLift = step.artificialLift;
  step.gravities = well.gravities = TubingGravities(case_.network, inflow_[place].gravities);
  if (well.tubing != nullptr && !well.tubing->table) {
    checks_.TubingGravities(runWell, record.date,
                            WantedGravities(case_.network, inflow_[place].gravities),
                            well.gravities);
  }
  return well;
}

void CoupledRun::Solve(StepRecord& record) {
  std::vector<NetworkWell> wells;
  std::vector<size_t> places;
  for (size_t i = 0; i < start_.wells.size(); ++i) {
    record.wells[i].point.limitedBy = state_->ShutBy(i);
    if (!state_->ShutBy(i).empty()) continue;
    wells.push_back(WellOfNetwork(i, record));
    places.push_back(i);
  }
  liftTables_.Assign(wells);
  record.groups = SolveNetwork(wells, state_->Groups());
  for (size_t i = 0; i < wells.size(); ++i) {
    WellStep& well = record.wells[places[i]];
    well.point = wells[i].Point();
    checks_.Lift(start_.wells[places[i]], record.date, wells[i]);
    well.lift = LiftAlong(wells[i], well.inflow);
  }
}

void CoupledRun::SendControls(const StepRecord& record) {
  const auto componentCount = static_cast<int>(start_.components.size());
  for (size_t i = 0; i < record.wells.size(); ++i) {
    const WellSpec& spec = state_->Well(i);
    const OperatingPoint& point = record.wells[i].point;
    DriverControl control{start_.wells[i].handle,     !point.isOpen,
                          state_->IsShutForGood(i),   {point.pressure, point.rates},
                          1 - record.wells[i].uptime, spec.composition};
    if (spec.Kind() == WellKind::kGasInjector && componentCount > 0 &&
        control.composition.empty()) {
      control.composition = {1.0};
    }
    model_.SetControl(control, inflow_[i], componentCount);
  }
}

}  // namespace gantry::fieldrun
