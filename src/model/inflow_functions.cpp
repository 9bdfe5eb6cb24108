#include "model/inflow_functions.h"

#include <memory>
#include <mutex>

#include "platform/dynamic_library.h"

namespace gantry {
namespace {

using platform::DynamicLibrary;

template <class Function>
bool Bind(const DynamicLibrary& library, Function*& function, const char* name) {
  function = reinterpret_cast<Function*>(library.Symbol(name));
  return function != nullptr;
}

/// False when an operation is missing.
bool BindAll(const DynamicLibrary& library, InflowFunctions& to) {
  return Bind(library, to.CreateIPRModel, "CreateIPRModel") &&
         Bind(library, to.DestroyIPRModel, "DestroyIPRModel") &&
         Bind(library, to.SetIPRCallbacks, "SetIPRCallbacks") &&
         Bind(library, to.StartIPRAddWell, "StartIPRAddWell") &&
         Bind(library, to.AddIPRWell, "AddIPRWell") &&
         Bind(library, to.EndIPRAddWell, "EndIPRAddWell") &&
         Bind(library, to.TransformIPR, "TransformIPR") && Bind(library, to.SetupIPR, "SetupIPR") &&
         Bind(library, to.SaveIPR, "SaveIPR") && Bind(library, to.LoadIPR, "LoadIPR");
}

/// The first library that has every operation, with its functions; else null.
std::unique_ptr<DynamicLibrary> FindLibrary(InflowFunctions& functions) {
  for (const auto& place : platform::LibraryPlaces("InflowCalc")) {
    auto library = DynamicLibrary::OpenAt(place);
    InflowFunctions found;
    if (library == nullptr || !BindAll(*library, found)) continue;
    functions = found;
    return library;
  }
  return nullptr;
}

}  // namespace

// What a library takes when it is loaded isn't all given back, so it is loaded once.
InflowFunctions InflowFunctions::Find() {
  static std::mutex lock;
  static std::unique_ptr<DynamicLibrary> library;
  static InflowFunctions functions;
  const std::lock_guard guard(lock);
  if (library == nullptr) library = FindLibrary(functions);
  return functions;
}

}  // namespace gantry
