#include "model/inflow_library.h"

#include <mutex>
#include <optional>

#include "platform/dynamic_library.h"

namespace gantry {
namespace {

class NoInflowLibrary : public InflowLibrary {
 public:
  void* CreateIPRModel(void* /*model*/) override { return nullptr; }
  void DestroyIPRModel(void* /*handle*/) override {}
  void SetIPRCallbacks(void* /*handle*/, const InflowCallbacks& /*callbacks*/) override {}
  void StartIPRAddWell(void* /*handle*/) override {}
  void AddIPRWell(void* /*handle*/, int32_t /*index*/, const char* /*name*/, bool /*isProducer*/,
                  bool /*second*/) override {}
  void EndIPRAddWell(void* /*handle*/) override {}
  int32_t TransformIPR(void* /*handle*/, const char* /*wellName*/, const void* /*stateRecord*/,
                       void* /*inflowRecord*/) override {
    return 0;
  }
  int32_t SetupIPR(void* /*window*/, void* /*handle*/) override { return 0; }
  int32_t SaveIPR(void* /*handle*/, intptr_t /*file*/) override { return 0; }
  int32_t LoadIPR(void* /*handle*/, intptr_t /*file*/) override { return 0; }
};

/// The library's exported functions.
struct InflowFunctions {
  void* (*CreateIPRModel)(void* model);
  void (*DestroyIPRModel)(void* handle);
  void (*SetIPRCallbacks)(void* handle, double (*elapsedDays)(void*),
                          int32_t (*restart)(void*, char*),
                          int32_t (*imposeRate)(void*, int32_t, double, char*),
                          int32_t (*advance)(void*, double, char*),
                          int32_t (*readInflow)(void*, int32_t, void*, char*),
                          int32_t (*readCurrent)(void*, int32_t, void*, char*));
  void (*StartIPRAddWell)(void* handle);
  void (*AddIPRWell)(void* handle, int32_t index, const char* name, bool isProducer, bool second);
  void (*EndIPRAddWell)(void* handle);
  int32_t (*TransformIPR)(void* handle, const char* wellName, const void* stateRecord,
                          void* inflowRecord);
  int32_t (*SetupIPR)(void* window, void* handle);
  int32_t (*SaveIPR)(void* handle, intptr_t file);
  int32_t (*LoadIPR)(void* handle, intptr_t file);
};

template <class Function>
bool Bind(const platform::DynamicLibrary& library, Function*& function, const char* name) {
  function = reinterpret_cast<Function*>(library.Symbol(name));
  return function != nullptr;
}

/// False when an operation is missing.
bool BindAll(const platform::DynamicLibrary& library, InflowFunctions& functions) {
  return Bind(library, functions.CreateIPRModel, "CreateIPRModel") &&
         Bind(library, functions.DestroyIPRModel, "DestroyIPRModel") &&
         Bind(library, functions.SetIPRCallbacks, "SetIPRCallbacks") &&
         Bind(library, functions.StartIPRAddWell, "StartIPRAddWell") &&
         Bind(library, functions.AddIPRWell, "AddIPRWell") &&
         Bind(library, functions.EndIPRAddWell, "EndIPRAddWell") &&
         Bind(library, functions.TransformIPR, "TransformIPR") &&
         Bind(library, functions.SetupIPR, "SetupIPR") &&
         Bind(library, functions.SaveIPR, "SaveIPR") && Bind(library, functions.LoadIPR, "LoadIPR");
}

class LoadedInflowLibrary : public InflowLibrary {
 public:
  explicit LoadedInflowLibrary(const InflowFunctions& functions) : functions_(functions) {}

  void* CreateIPRModel(void* model) override { return functions_.CreateIPRModel(model); }
  void DestroyIPRModel(void* handle) override { functions_.DestroyIPRModel(handle); }
  void SetIPRCallbacks(void* handle, const InflowCallbacks& callbacks) override {
    functions_.SetIPRCallbacks(handle, callbacks.elapsedDays, callbacks.restart,
                               callbacks.imposeRate, callbacks.advance, callbacks.readInflow,
                               callbacks.readCurrent);
  }
  void StartIPRAddWell(void* handle) override { functions_.StartIPRAddWell(handle); }
  void AddIPRWell(void* handle, int32_t index, const char* name, bool isProducer,
                  bool second) override {
    functions_.AddIPRWell(handle, index, name, isProducer, second);
  }
  void EndIPRAddWell(void* handle) override { functions_.EndIPRAddWell(handle); }
  int32_t TransformIPR(void* handle, const char* wellName, const void* stateRecord,
                       void* inflowRecord) override {
    return functions_.TransformIPR(handle, wellName, stateRecord, inflowRecord);
  }
  int32_t SetupIPR(void* window, void* handle) override {
    return functions_.SetupIPR(window, handle);
  }
  int32_t SaveIPR(void* handle, intptr_t file) override { return functions_.SaveIPR(handle, file); }
  int32_t LoadIPR(void* handle, intptr_t file) override { return functions_.LoadIPR(handle, file); }

 private:
  InflowFunctions functions_;
};

struct BoundLibrary {
  std::unique_ptr<platform::DynamicLibrary> library;
  InflowFunctions functions = {};
};

/// Without its library when there is none that has every operation.
BoundLibrary FindLibrary() {
  for (const auto& place : platform::LibraryPlaces("InflowCalc")) {
    BoundLibrary found = {.library = platform::DynamicLibrary::OpenAt(place)};
    if (found.library != nullptr && BindAll(*found.library, found.functions)) return found;
  }
  return {};
}

/// Once found, the library stays loaded for as long as the module: what a library takes when it is
/// loaded isn't all given back.
std::optional<InflowFunctions> TheFunctions() {
  static std::mutex lock;
  static BoundLibrary bound;
  const std::lock_guard guard(lock);
  if (bound.library == nullptr) bound = FindLibrary();
  if (bound.library == nullptr) return std::nullopt;
  return bound.functions;
}

}  // namespace

std::unique_ptr<InflowLibrary> InflowLibrary::Open() {
  if (const auto functions = TheFunctions()) {
    return std::make_unique<LoadedInflowLibrary>(*functions);
  }
  return None();
}

std::unique_ptr<InflowLibrary> InflowLibrary::None() { return std::make_unique<NoInflowLibrary>(); }

}  // namespace gantry
