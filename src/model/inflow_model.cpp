#include "model/inflow_model.h"

#include <utility>

namespace gantry {
namespace {

/// Puts a well's state into the first points of a record, and gives back what stood there.
IPRPoint ExchangeState(_tGetSetData& record, const IPRPoint& state) {
  return {.Pressure = std::exchange(record.pressure[0], state.Pressure),
          .OilRate = std::exchange(record.oilRate[0], state.OilRate),
          .GasRate = std::exchange(record.gasRate[0], state.GasRate),
          .WaterRate = std::exchange(record.waterRate[0], state.WaterRate),
          .Composition = {}};
}

}  // namespace

InflowModel::InflowModel(void* model, const InflowCallbacks& callbacks)
    : handle_(library_.CreateIPRModel(model)), state_(std::make_unique<_tGetSetData>()) {
  state_->size = sizeof *state_;
  if (handle_ == nullptr) library_ = {};
  library_.SetIPRCallbacks(handle_, callbacks.elapsedDays, callbacks.restart, callbacks.imposeRate,
                           callbacks.advance, callbacks.readInflow, callbacks.readCurrent);
}

InflowModel::~InflowModel() { library_.DestroyIPRModel(handle_); }

void InflowModel::RegisterWells(const SourceList& sources) {
  library_.StartIPRAddWell(handle_);
  for (size_t i = 0; i < sources.Items.size(); ++i) {
    const Source& source = sources.Items[i];
    const bool second = source.SourceType != kGasInjector && !source.IsGasWell();
    library_.AddIPRWell(handle_, static_cast<int32_t>(i), source.Name.c_str(),
                        source.SourceType == kProducer, second);
  }
  library_.EndIPRAddWell(handle_);
}

// The library may ask for another well's table while it reads this one's state, which then stands
// in the same record again; or it may restart the simulator, which drops the source and its name.
void InflowModel::Transform(std::string well, const IPRPoint& state, _tGetSetData& record) {
  const IPRPoint outer = ExchangeState(*state_, state);
  library_.TransformIPR(handle_, well.c_str(), state_.get(), &record);
  ExchangeState(*state_, outer);
}

}  // namespace gantry
