#pragma once

#include <cstdint>
#include <memory>

namespace gantry {

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

inline constexpr size_t kInflowTextSize = 260;

/// The operations of the closed inflow library, which keeps its own model of every well. Called on
/// the host's thread; the library calls back on the same one. Records are `_tGetSetData`.
class InflowLibrary {
 public:
  virtual ~InflowLibrary() = default;

  virtual void* CreateIPRModel(void* model) = 0;
  virtual void DestroyIPRModel(void* handle) = 0;
  virtual void SetIPRCallbacks(void* handle, const InflowCallbacks& callbacks) = 0;
  virtual void StartIPRAddWell(void* handle) = 0;
  virtual void AddIPRWell(void* handle, int32_t index, const char* name, bool isProducer,
                          bool second) = 0;
  virtual void EndIPRAddWell(void* handle) = 0;
  virtual int32_t TransformIPR(void* handle, const char* wellName, const void* stateRecord,
                               void* inflowRecord) = 0;
  virtual int32_t SetupIPR(void* window, void* handle) = 0;
  virtual int32_t SaveIPR(void* handle, intptr_t file) = 0;
  virtual int32_t LoadIPR(void* handle, intptr_t file) = 0;

  /// The library beside the module, else where the system keeps libraries. Where there is none, or
  /// one that lacks an operation, an object that transforms nothing and keeps nothing. Never null.
  static std::unique_ptr<InflowLibrary> Open();
  static std::unique_ptr<InflowLibrary> None();
};

}  // namespace gantry
