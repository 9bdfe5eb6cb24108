// How a run comes up and steps: the simulator's process, its static data, the way to the host's
// date, and the exchange of each step.

#include <algorithm>
#include <chrono>
#include <cmath>

#include "boundary/day_zero.h"
#include "model/ext_model.h"
#include "model/model_failure.h"
#include "sessions/job_slot.h"

namespace gantry {

static constexpr char kStepFailed[] = "Connection to simulator failed (Timestep)";

int32_t CExtModel::StartSimulator(const SimulatorStartRecord* /*record*/, ExtErrorBlock* err) {
  if (skipNextStart_) return 0;
  const platform::SingleLock lock(run_.Lock);
  field_.Sources.Items.clear();
  run_.Clear();
  LinkSettings& settings = case_.Settings;
  if (settings.ConnectionMode == kLocalComputer) {
    settings.FileName = DatasetForJobSlot(settings.FileName);
  }
  if (run_.Open(settings, err) != 0) return 1;
  const std::vector<std::string> oldNames = case_.ComponentNames;
  if (ReadStaticData(err) != 0) {
    run_.Drop();
    return 1;
  }
  case_.Wells.RebuildFrom(field_.Sources);
  inflow_.RegisterWells(field_.Sources);
  published_.Prune(case_.Wells, oldNames != case_.ComponentNames);
  return 0;
}

int32_t CExtModel::ReadStaticData(ExtErrorBlock* err) {
  return run_.Talk(err, "Connection to simulator failed (ReadStaticData)",
                   [this](CExtConnectorBase& connector) {
                     field_.ReadStatic(connector, case_.ComponentNames);
                     return 0;
                   });
}

int32_t CExtModel::RunStart(bool allWells, const RunStartRecord& record, ExtErrorBlock* err) {
  const platform::SingleLock lock(run_.Lock);
  run_.StopRequested = false;
  inCalculatorStep_ = false;
  hostLog_ = record.logCallback;
  hostStatus_ = record.statusCallback;
  case_.MarkConnected(allWells, record);
  if (!IsRunning() && StartJob(err) != 0) return 1;
  run_.SimulatorDays = run_.StartElapsedDays;
  if (RunUpTo(record.startDate, err) != 0) return 1;
  if (!field_.Compositional) return 0;
  return run_.Talk(err, "Connection to simulator failed (StartRun)",
                   [this](CExtConnectorBase& connector) {
                     Field::SetUpGasInjection(connector, case_.Wells, case_.ComponentNames.size());
                     return 0;
                   });
}

// The simulator must still be the one that the case was built on; the host's marks and modes of the
// wells outlive the start.
int32_t CExtModel::StartJob(ExtErrorBlock* err) {
  field_.Compositional = false;
  const StaticWellDataCollection hostWells = case_.Wells;
  const std::vector<std::string> hostNames = case_.ComponentNames;
  const bool exportsComponents = published_.List.HasPerComponentVariable();
  skipNextStart_ = false;
  if (StartSimulator(nullptr, err) != 0) return 1;
  if (const auto difference = ReconcileWells(hostWells, case_.Wells)) return Fail(err, *difference);
  if (exportsComponents && hostNames != case_.ComponentNames) {
    return Fail(err, "The simulator composition has changed, so the simulator must be reloaded");
  }
  case_.Wells = hostWells;
  return 0;
}

// Steps of at most 30 days let a stop from another thread take effect; what the simulator has
// reached, not what was asked, ends the loop.
int32_t CExtModel::RunUpTo(double hostDate, ExtErrorBlock* err) {
  constexpr double kLongestStep = 30.0;
  constexpr double kCloseEnough = 0.1;
  if (!run_.SimulationDate) return 0;
  const double total = hostDate - DayNumber(*run_.SimulationDate);
  if (!(total > 0.0)) return 0;
  if (total > kMaxDateDifference) return Fail(err, "The start date of the run is out of range");
  TellHost("Running Intersect to Tessel start date", hostStatus_);
  double remaining = total;
  do {
    opPointsApplied_ = true;  // no orders on the way
    if (StepBy(std::min(remaining, kLongestStep), err) != 0) return 1;
    remaining = total - (run_.SimulatorDays - run_.StartElapsedDays);
  } while (!run_.StopRequested && remaining > kCloseEnough);
  return 0;
}

int32_t CExtModel::GetFluidModel(FluidModelRecord* record, ExtErrorBlock* /*err*/) {
  return record != nullptr && field_.FillFluid(*record) ? 0 : 1;
}

int32_t CExtModel::GetSimulationDate(DateRecord* record, ExtErrorBlock* /*err*/) {
  if (record == nullptr || !run_.SimulationDate) return 1;
  const std::chrono::year_month_day date(*run_.SimulationDate);
  record->flags = EXT_DATE_HAS_DAY | EXT_DATE_HAS_NUMBER;
  record->day = static_cast<int32_t>(static_cast<unsigned>(date.day()));
  record->month = static_cast<int32_t>(static_cast<unsigned>(date.month()));
  record->year = static_cast<int>(date.year());
  record->number = DayNumber(*run_.SimulationDate);
  return 0;
}

int32_t CExtModel::ReadWells(bool connectedOnly, ExtErrorBlock* err) {
  return run_.With(err, "Connection to simulator failed while getting well data (SetTimestepData)",
                   [&](CExtConnectorBase& connector) {
                     if (field_.ReadWells(connector, case_.Wells.Names(connectedOnly))) return 0;
                     return Fail(err, "Unknown well returned from call to simulator");
                   });
}

int32_t CExtModel::ApplyOperatingPoints(ExtErrorBlock* err) {
  return run_.With(err, kStepFailed, [this](CExtConnectorBase& connector) {
    const StepRules rules = {.closeUnconnected = case_.Settings.CloseUnconnectedWells,
                             .compositional = field_.Compositional,
                             .reevaluate = field_.Compositional && !inCalculatorStep_};
    opPointsApplied_ = false;  // unless all of these reach the simulator
    field_.SendOrders(connector, case_.Wells, rules);
    opPointsApplied_ = true;
    return 0;
  });
}

int32_t CExtModel::StepBy(double days, ExtErrorBlock* err) {
  return run_.With(err, kStepFailed, [&](CExtConnectorBase& connector) {
    if (!std::isfinite(days)) return Fail(err, "The length of the step is no number");
    if (!opPointsApplied_ && ApplyOperatingPoints(err) != 0) return 1;
    opPointsApplied_ = false;
    return run_.Advance(connector, days, err);
  });
}

}  // namespace gantry
