#include "scripted_reservoir.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace gantry::test {

void ScriptedReservoir::Well::FillTable(_tGetSetData& record) const {
  const double block = BlockPressure(rate);
  const double highest = blockIndex * (block - 1000.0);
  record.pointCount = 10;
  for (int i = 0; i < 10; ++i) {
    const double liquid = highest * std::pow((10 - i) / 10.0, 2.5);
    record.oilRate[i] = 0.75 * liquid;
    record.waterRate[i] = 0.25 * liquid;
    record.gasRate[i] = 0.0005 * liquid;
    record.pressure[i] = block - liquid / blockIndex;
  }
}

void ScriptedReservoir::Well::FillCurrent(_tGetSetData& record) const {
  record.pressure[0] = FlowingPressure(rate);
  record.oilRate[0] = 0.75 * rate;
  record.waterRate[0] = 0.25 * rate;
  record.gasRate[0] = 0.0005 * rate;
}

ScriptedReservoir::ScriptedReservoir(std::vector<Well> wells)
    : handle_(this), wells_(std::move(wells)) {
  SetIPRCallbacks(Handle(), ElapsedDays, Restart, ImposeRate, Advance, ReadInflow, ReadCurrent);
  RegisterWells();
}

void ScriptedReservoir::RegisterWells() {
  StartIPRAddWell(Handle());
  for (size_t i = 0; i < wells_.size(); ++i)
    AddIPRWell(Handle(), static_cast<int32_t>(i), wells_[i].name.c_str(), true, true);
  EndIPRAddWell(Handle());
}

double ScriptedReservoir::PressureOfLowestRate(size_t index) {
  Well well = wells_.at(index);
  well.rate = 3000.0;
  const auto table = std::make_unique<_tGetSetData>();
  const auto state = std::make_unique<_tGetSetData>();
  well.FillTable(*table);
  well.FillCurrent(*state);
  TransformIPR(Handle(), well.name.c_str(), state.get(), table.get());
  return table->pressure[table->pointCount - 1];
}

int32_t ScriptedReservoir::Answer(const char* call, char* text) {
  log.emplace_back(call);
  if (++calls != failingCall) return 0;
  std::strcpy(text, "no connection");
  return 1;
}

double ScriptedReservoir::ElapsedDays(void* model) { return Of(model).days_; }

int32_t ScriptedReservoir::Restart(void* model, char* text) {
  ScriptedReservoir& self = Of(model);
  self.days_ = 0.0;
  self.hasRead_ = false;
  for (Well& well : self.wells_) well.rate = 0.0;
  self.RegisterWells();
  return self.Answer("restart", text);
}

int32_t ScriptedReservoir::ImposeRate(void* model, int32_t well, double rate, char* text) {
  ScriptedReservoir& self = Of(model);
  self.wells_.at(static_cast<size_t>(well)).rate = rate;
  return self.Answer(rate == 0.0 ? "shut" : "flow", text);
}

int32_t ScriptedReservoir::Advance(void* model, double days, char* text) {
  ScriptedReservoir& self = Of(model);
  if (!self.timeStandsStill) self.days_ += days;
  self.hasRead_ = true;
  return self.Answer("advance", text);
}

int32_t ScriptedReservoir::ReadInflow(void* model, int32_t index, void* record, char* text) {
  ScriptedReservoir& self = Of(model);
  const Well& well = self.wells_.at(static_cast<size_t>(index));
  auto& inflow = *static_cast<_tGetSetData*>(record);
  const auto state = std::make_unique<_tGetSetData>();
  if (self.hasRead_) well.FillTable(inflow);
  well.FillCurrent(*state);
  TransformIPR(self.Handle(), well.name.c_str(), state.get(), &inflow);
  return self.Answer("inflow", text);
}

int32_t ScriptedReservoir::ReadCurrent(void* model, int32_t index, void* record, char* text) {
  ScriptedReservoir& self = Of(model);
  self.wells_.at(static_cast<size_t>(index)).FillCurrent(*static_cast<_tGetSetData*>(record));
  return self.Answer("current", text);
}

}  // namespace gantry::test
