// The step: wells read from the simulator, orders sent to it, and its run to the new time.

#include <cmath>

#include "model/ext_model.h"
#include "model/model_failure.h"
#include "model/step_orders.h"
#include "model/well_reading.h"

namespace gantry {

static constexpr char kStepFailed[] = "Connection to simulator failed (Timestep)";

int32_t CExtModel::SetTimestepData(void* /*data*/, bool /*flag*/, ExtErrorBlock* err) {
  return ReadWells(true, err);
}

int32_t CExtModel::ReadWells(bool connectedOnly, ExtErrorBlock* err) {
  const platform::SingleLock lock(Lock);
  if (!IsRunning()) return Fail(err, kNotRunning);
  try {
    return ReadWellRecords(Wells.Names(connectedOnly), err);
  } catch (const std::exception& failure) {
    return FailWith(err, "Connection to simulator failed while getting well data (SetTimestepData)",
                    failure.what());
  }
}

int32_t CExtModel::ReadWellRecords(const std::vector<std::string>& names, ExtErrorBlock* err) {
  constexpr bool kUseBottomHolePressure = true;
  constexpr double kSkewness = 2.5;
  CExtConnectorBase& connector = *Session->Connector;
  wellRecords_.clear();
  connector.GetWellDataAndIPR(FluidModel.componentCount, names, wellRecords_,
                              kUseBottomHolePressure, kSkewness);
  const bool allKnown = FillSources(Sources, wellRecords_);
  connector.KeepStorageOf(wellRecords_);
  if (allKnown) return 0;
  return Fail(err, "Unknown well returned from call to simulator");
}

int32_t CExtModel::ApplyOperatingPoints(ExtErrorBlock* err) {
  if (!IsRunning()) return Fail(err, kNotRunning);
  const platform::SingleLock lock(Lock);
  if (Session == nullptr) return Fail(err, kNotRunning);
  const StepRules rules = {.closeUnconnected = Settings.CloseUnconnectedWells,
                           .compositional = Compositional,
                           .reevaluate = Compositional && !InCalculatorStep};
  OpPointsApplied = false;  // unless all of these reach the simulator
  try {
    DrawUpOrders(Sources, Wells, rules, orders_);
    orders_.Send(*Session->Connector);
    OpPointsApplied = true;
    return 0;
  } catch (const std::exception& failure) {
    return FailWith(err, kStepFailed, failure.what());
  }
}

int32_t CExtModel::Timestep(const TimestepRecord* record, ExtErrorBlock* err) {
  return StepBy(record->stepDays, err);
}

int32_t CExtModel::StepBy(double days, ExtErrorBlock* err) {
  if (!IsRunning()) return Fail(err, kNotRunning);
  if (!std::isfinite(days)) return Fail(err, "The length of the step is no number");
  const platform::SingleLock lock(Lock);
  if (Session == nullptr) return Fail(err, kNotRunning);
  if (!OpPointsApplied && ApplyOperatingPoints(err) != 0) return 1;
  OpPointsApplied = false;
  try {
    return RunStep(days, err);
  } catch (const std::exception& failure) {
    return FailWith(err, kStepFailed, failure.what());
  }
}

// The simulator's target moves before it runs: a session that fails here isn't used again.
int32_t CExtModel::RunStep(double days, ExtErrorBlock* err) {
  SimulatorDays += days;
  Session->Connector->RunUntil(SimulatorDays);
  if (Session->Connector->GetTerminationFlag()) return Fail(err, "The Intersect simulation ended");
  CurrentElapsedDays += days;
  return 0;
}

}  // namespace gantry
