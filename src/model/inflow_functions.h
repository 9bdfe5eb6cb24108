#pragma once

#include <cstddef>
#include <cstdint>

namespace gantry {

inline constexpr size_t kInflowTextSize = 260;

/// What the inflow library may ask of the model in return. `model` is the pointer given to
/// `CreateIPRModel`; `text` has 260 bytes, and holds the reason where a function returns 1.
struct InflowCallbacks {
  double (*elapsedDays)(void* model);
  int32_t (*restart)(void* model, char* text);
  int32_t (*imposeRate)(void* model, int32_t well, double rate, char* text);
  int32_t (*advance)(void* model, double days, char* text);
  int32_t (*readInflow)(void* model, int32_t well, void* record, char* text);
  int32_t (*readCurrent)(void* model, int32_t well, void* record, char* text);
};

/// The operations of the closed inflow library, which keeps its own model of every well. Called on
/// the host's thread; the library calls back on the same one. Records are `_tGetSetData`. As they
/// stand here they do nothing and keep nothing.
struct InflowFunctions {
  void* (*CreateIPRModel)(void* model) = [](void*) -> void* { return nullptr; };
  void (*DestroyIPRModel)(void* handle) = [](void*) {};
  void (*SetIPRCallbacks)(void* handle, decltype(InflowCallbacks::elapsedDays),
                          decltype(InflowCallbacks::restart), decltype(InflowCallbacks::imposeRate),
                          decltype(InflowCallbacks::advance), decltype(InflowCallbacks::readInflow),
                          decltype(InflowCallbacks::readCurrent)) = [](void*, auto...) {};
  void (*StartIPRAddWell)(void* handle) = [](void*) {};
  void (*AddIPRWell)(void* handle, int32_t index, const char* name, bool isProducer,
                     bool second) = [](void*, int32_t, const char*, bool, bool) {};
  void (*EndIPRAddWell)(void* handle) = [](void*) {};
  int32_t (*TransformIPR)(void* handle, const char* wellName, const void* stateRecord,
                          void* inflowRecord) = [](void*, const char*, const void*, void*) {
    return 0;
  };
  int32_t (*SetupIPR)(void* window, void* handle) = [](void*, void*) { return 0; };
  int32_t (*SaveIPR)(void* handle, intptr_t file) = [](void*, intptr_t) { return 0; };
  int32_t (*LoadIPR)(void* handle, intptr_t file) = [](void*, intptr_t) { return 0; };

  /// Those of the library beside the module, else where the system keeps libraries; of none where
  /// there is no library that has them all. A library that was found stays loaded.
  static InflowFunctions Find();
};

}  // namespace gantry
