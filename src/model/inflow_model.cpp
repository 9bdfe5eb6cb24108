#include "model/inflow_model.h"

#include "model/inflow_points.h"

namespace gantry {

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
  const IPRPoint outer = PointOf(*state_, 0);
  SetPoint(*state_, 0, state);
  library_.TransformIPR(handle_, well.c_str(), state_.get(), &record);
  SetPoint(*state_, 0, outer);
}

}  // namespace gantry
