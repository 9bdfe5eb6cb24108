#include "model/inflow_callbacks.h"

#include <memory>
#include <span>
#include <utility>

#include "model/ext_model.h"
#include "model/model_failure.h"
#include "platform/module_state.h"

namespace gantry {
namespace {

CExtModel& ModelOf(void* model) { return *static_cast<CExtModel*>(model); }

/// Gives the library a failure's text; the result stays what it was.
int32_t Tell(int32_t result, const ExtErrorBlock& err, char* text) {
  if (result != 0 && text != nullptr) CopyBounded({text, kInflowTextSize}, err.text);
  return result != 0 ? 1 : 0;
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

/// The persistent record of a well: nearly always at the same place as the live one.
StaticWellData* FindKept(StaticWellDataCollection& wells, int32_t well, const std::string& name) {
  const auto place = static_cast<size_t>(well);
  const bool isThere = place < wells.Items.size() && wells.Items[place].Name == name;
  return isThere ? &wells.Items[place] : wells.Find(name);
}

}  // namespace

const InflowCallbacks& ModelCallbacks::Table() {
  static constexpr InflowCallbacks table = {.elapsedDays = ElapsedDays,
                                            .restart = Restart,
                                            .imposeRate = ImposeRate,
                                            .advance = Advance,
                                            .readInflow = ReadInflow,
                                            .readCurrent = ReadCurrent};
  return table;
}

double ModelCallbacks::ElapsedDays(void* model) { return ModelOf(model).CurrentElapsedDays; }

int32_t ModelCallbacks::Restart(void* model, char* text) {
  const platform::ModuleStateScope state;
  CExtModel& self = ModelOf(model);
  if (self.IsRunning()) self.CloseSimulator();
  ExtErrorBlock err = {};
  return Tell(self.RunStart(true, RunStartRecord{}, &err), err, text);
}

int32_t ModelCallbacks::ImposeRate(void* model, int32_t well, double rate, char* text) {
  CExtModel& self = ModelOf(model);
  ExtErrorBlock err = {};
  if (!self.HasSource(well)) {
    return Tell(self.SetOpPt(ImposedPoint(well, kProducer, rate).get(), &err), err, text);
  }
  const Source& source = self.Sources.Items[static_cast<size_t>(well)];
  StaticWellData* const kept = FindKept(self.Wells, well, source.Name);
  if (kept == nullptr) return 0;
  const int32_t opMode = std::exchange(kept->OpMode, kControlRate);
  const auto record = ImposedPoint(well, source.SourceType, rate);
  const int32_t result = self.SetOpPt(record.get(), &err);
  if (result == 0) kept->OpMode = opMode;
  return Tell(result, err, text);
}

int32_t ModelCallbacks::Advance(void* model, double days, char* text) {
  CExtModel& self = ModelOf(model);
  ExtErrorBlock err = {};
  self.InCalculatorStep = true;
  int32_t result = self.StepBy(days, &err);
  if (result == 0) result = self.SetTimestepData(nullptr, false, &err);
  self.InCalculatorStep = false;
  return Tell(result, err, text);
}

int32_t ModelCallbacks::ReadInflow(void* model, int32_t well, void* record, char* text) {
  auto& inflow = *static_cast<_tGetSetData*>(record);
  inflow.well = well;
  ExtErrorBlock err = {};
  return Tell(ModelOf(model).GetIPR(&inflow, &err), err, text);
}

int32_t ModelCallbacks::ReadCurrent(void* model, int32_t well, void* record, char* text) {
  const CExtModel& self = ModelOf(model);
  if (!self.HasSource(well)) {
    ExtErrorBlock err = {};
    const std::string reason =
        "The requested well number " + std::to_string(int64_t{well} + 1) + " does not exist";
    return Tell(Fail(&err, reason), err, text);
  }
  const IPRPoint& current = self.Sources.Items[static_cast<size_t>(well)].Current;
  auto& state = *static_cast<_tGetSetData*>(record);
  state.pressure[0] = current.Pressure;
  state.oilRate[0] = current.OilRate;
  state.gasRate[0] = current.GasRate;
  state.waterRate[0] = current.WaterRate;
  return 0;
}

}  // namespace gantry
