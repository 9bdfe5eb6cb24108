#include "scripted_reservoir.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace gantry::test {
namespace {

/// An operation of the reservoir as the library calls it.
template <auto kOperation, class... Arguments>
int32_t Call(void* model, Arguments... arguments) {
  return (static_cast<ScriptedReservoir*>(model)->*kOperation)(arguments...);
}

}  // namespace

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
  using Self = ScriptedReservoir;
  const auto elapsedDays = [](void* model) { return static_cast<Self*>(model)->days_; };
  SetIPRCallbacks(Handle(), elapsedDays, Call<&Self::Restart>, Call<&Self::ImposeRate>,
                  Call<&Self::Advance>, Call<&Self::ReadInflow>, Call<&Self::ReadCurrent>);
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

int32_t ScriptedReservoir::Restart(char* text) {
  days_ = 0.0;
  hasRead_ = false;
  for (Well& well : wells_) well.rate = 0.0;
  RegisterWells();
  return Answer("restart", text);
}

int32_t ScriptedReservoir::ImposeRate(int32_t well, double rate, char* text) {
  wells_.at(static_cast<size_t>(well)).rate = rate;
  return Answer(rate == 0.0 ? "shut" : "flow", text);
}

int32_t ScriptedReservoir::Advance(double days, char* text) {
  if (!timeStandsStill) days_ += days;
  hasRead_ = true;
  return Answer("advance", text);
}

int32_t ScriptedReservoir::ReadInflow(int32_t index, void* record, char* text) {
  const Well& well = wells_.at(static_cast<size_t>(index));
  auto& inflow = *static_cast<_tGetSetData*>(record);
  const auto state = std::make_unique<_tGetSetData>();
  if (hasRead_) well.FillTable(inflow);
  well.FillCurrent(*state);
  TransformIPR(Handle(), well.name.c_str(), state.get(), &inflow);
  return Answer("inflow", text);
}

int32_t ScriptedReservoir::ReadCurrent(int32_t index, void* record, char* text) {
  wells_.at(static_cast<size_t>(index)).FillCurrent(*static_cast<_tGetSetData*>(record));
  return Answer("current", text);
}

}  // namespace gantry::test
