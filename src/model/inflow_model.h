#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "boundary/records.h"
#include "model/inflow_functions.h"
#include "wells/source.h"

namespace gantry {

/// The inflow library's own model of the wells, owned. Called on the host's thread; the library may
/// call the driver's model back, and this one through it, before an operation returns.
class InflowModel {
 public:
  /// `model` is what the library hands to the callbacks.
  InflowModel(void* model, const InflowCallbacks& callbacks);
  ~InflowModel();

  void RegisterWells(const SourceList& sources);
  /// Lets the library rewrite the inflow points of the record, by the well's state.
  void Transform(std::string well, const IPRPoint& state, _tGetSetData& record);
  /// The library's own settings, over a window.
  void SetUp(void* window) { library_.SetupIPR(window, handle_); }
  /// At the position of an open file, given by its native handle.
  void Save(intptr_t file) { library_.SaveIPR(handle_, file); }
  void Load(intptr_t file) { library_.LoadIPR(handle_, file); }

 private:
  InflowFunctions library_ = InflowFunctions::Find();
  void* handle_;
  std::unique_ptr<_tGetSetData> state_;  ///< of the well in hand; zero but for its first points
};

}  // namespace gantry
