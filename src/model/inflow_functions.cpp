#include "model/inflow_functions.h"

#include <memory>
#include <mutex>

#include "platform/dynamic_library.h"

namespace gantry {
namespace {

using platform::DynamicLibrary;

/// False when an operation is missing.
bool BindAll(const DynamicLibrary& library, InflowFunctions& to) {
  return library.Bind(to.CreateIPRModel, "CreateIPRModel") &&
         library.Bind(to.DestroyIPRModel, "DestroyIPRModel") &&
         library.Bind(to.SetIPRCallbacks, "SetIPRCallbacks") &&
         library.Bind(to.StartIPRAddWell, "StartIPRAddWell") &&
         library.Bind(to.AddIPRWell, "AddIPRWell") &&
         library.Bind(to.EndIPRAddWell, "EndIPRAddWell") &&
         library.Bind(to.TransformIPR, "TransformIPR") && library.Bind(to.SetupIPR, "SetupIPR") &&
         library.Bind(to.SaveIPR, "SaveIPR") && library.Bind(to.LoadIPR, "LoadIPR");
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
