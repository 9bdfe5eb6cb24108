// The exchange with the host's network: inflow tables out, operating points in. And the same for
// the inflow library, which drives the model back.

#include <algorithm>
#include <cinttypes>
#include <memory>
#include <utility>

#include "model/ext_model.h"
#include "model/inflow_points.h"
#include "model/model_failure.h"

namespace gantry {
namespace {

/// What the host sees of the inflow, after the library may have changed it.
void KeepHostInflow(const _tGetSetData& record, std::vector<IPRPoint>& points) {
  constexpr auto most = static_cast<int32_t>(kMaxInflowPoints);
  points.resize(static_cast<size_t>(std::clamp(record.pointCount, 0, most)));
  for (size_t i = 0; i < points.size(); ++i) points[i] = PointOf(record, i);
}

int32_t FailNoWell(ExtErrorBlock* err, const char* word, int32_t well, const char* ending) {
  return Fail(err, FormatText("The requested well %s %" PRId64 " does not exist%s", word,
                              int64_t{well} + 1, ending));
}

/// An operating point of one rate, for a well of the given type; a rate of 0 shuts the well.
std::unique_ptr<_tGetSetData> ImposedPoint(int32_t well, int32_t type, double rate) {
  auto record = std::make_unique<_tGetSetData>();
  record->size = sizeof *record;
  record->well = well;
  record->isShut = rate == 0.0 ? 1 : 0;
  if (type == kProducer)
    record->oilRate[0] = rate;
  else if (type == kGasInjector)
    record->gasRate[0] = rate;
  else
    record->waterRate[0] = rate;
  record->oilGravity = 0.8;
  record->gasGravity = 0.7;
  record->waterGravity = 1.0;
  return record;
}

}  // namespace

int32_t CExtModel::GetIPR(_tGetSetData* record, ExtErrorBlock* err) {
  const int32_t well = record->well;
  Source* source = field_.Sources.At(well);
  if (source != nullptr) {
    field_.FillInflow(*source, *record);
    if (case_.Settings.IPRModel == kDrainageRegion) {
      IPRPoint state = source->Current;
      if (run_.CurrentElapsedDays == 0.0) state.Pressure = EXT_FAILED_NUMBER;
      inflow_.Transform(source->Name, state, *record);
    }
    source = field_.Sources.At(well);  // the library may have started the simulator anew
  }
  if (source == nullptr) return FailNoWell(err, "number", well, " (function call GetIPR).");
  KeepHostInflow(*record, source->HostIPR);
  record->hasStepped = run_.CurrentElapsedDays > 0.0 ? 1 : 0;
  record->currentPressure = source->Current.Pressure;
  record->currentOilRate = source->Current.OilRate;
  record->currentWaterRate = source->Current.WaterRate;
  record->currentGasRate = source->Current.GasRate;
  return 0;
}

int32_t CExtModel::SetOpPt(const _tGetSetData* record, ExtErrorBlock* err) {
  Source* const source = field_.Sources.At(record->well);
  if (source == nullptr) return FailNoWell(err, "No.", record->well, " (function call SetOpPt).");
  field_.TakeOperatingPoint(*record, *source);
  return 0;
}

int32_t CExtModel::Restart(ExtErrorBlock* err) {
  if (IsRunning()) CloseSimulator();
  return RunStart(true, RunStartRecord{}, err);
}

int32_t CExtModel::ImposeRate(int32_t well, double rate, ExtErrorBlock* err) {
  const Source* const source = field_.Sources.At(well);
  if (source == nullptr) return SetOpPt(ImposedPoint(well, kProducer, rate).get(), err);
  StaticWellData* const kept = case_.Wells.Find(source->Name);
  if (kept == nullptr) return 0;
  const int32_t opMode = std::exchange(kept->OpMode, kControlRate);
  const int32_t result = SetOpPt(ImposedPoint(well, source->SourceType, rate).get(), err);
  if (result == 0) kept->OpMode = opMode;
  return result;
}

int32_t CExtModel::Advance(double days, ExtErrorBlock* err) {
  inCalculatorStep_ = true;
  int32_t result = StepBy(days, err);
  if (result == 0) result = ReadWells(true, err);
  inCalculatorStep_ = false;
  return result;
}

int32_t CExtModel::ReadInflow(int32_t well, _tGetSetData& record, ExtErrorBlock* err) {
  record.well = well;
  return GetIPR(&record, err);
}

int32_t CExtModel::ReadCurrent(int32_t well, _tGetSetData& record, ExtErrorBlock* err) {
  const Source* const source = field_.Sources.At(well);
  if (source == nullptr) return FailNoWell(err, "number", well, "");
  SetPoint(record, 0, source->Current);
  return 0;
}

}  // namespace gantry
