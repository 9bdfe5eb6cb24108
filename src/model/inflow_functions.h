#pragma once

#include "gantry/inflow.h"

namespace gantry {

/// What the inflow library may ask of the model in return.
struct InflowCallbacks {
  IPRElapsedDays elapsedDays;
  IPRRestart restart;
  IPRImposeRate imposeRate;
  IPRAdvance advance;
  IPRReadInflow readInflow;
  IPRReadCurrent readCurrent;
};

/// The operations of the closed inflow library, which keeps its own model of every well. Called on
/// the host's thread; the library calls back on the same one. As they stand here they do nothing
/// and keep nothing.
struct InflowFunctions {
  CreateIPRModelFunction* CreateIPRModel = [](void*) -> void* { return nullptr; };
  DestroyIPRModelFunction* DestroyIPRModel = [](void*) {};
  SetIPRCallbacksFunction* SetIPRCallbacks = [](void*, auto...) {};
  StartIPRAddWellFunction* StartIPRAddWell = [](void*) {};
  AddIPRWellFunction* AddIPRWell = [](void*, int32_t, const char*, bool, bool) {};
  EndIPRAddWellFunction* EndIPRAddWell = [](void*) {};
  TransformIPRFunction* TransformIPR = [](void*, const char*, const void*, void*) { return 0; };
  SetupIPRFunction* SetupIPR = [](void*, void*) { return 0; };
  SaveIPRFunction* SaveIPR = [](void*, intptr_t) { return 0; };
  LoadIPRFunction* LoadIPR = [](void*, intptr_t) { return 0; };

  /// Those of the library beside the module, else where the system keeps libraries; of none where
  /// there is no library that has them all. A library that was found stays loaded.
  static InflowFunctions Find();
};

}  // namespace gantry
