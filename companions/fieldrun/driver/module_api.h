#pragma once

#include <memory>
#include <string>

#include "gantry/boundary.h"

namespace gantry::platform {
class DynamicLibrary;
}

namespace gantry::fieldrun {

/// The exported functions of a driver module, loaded by a host program. The module stays loaded for
/// the life of the object; a model made through it must be destroyed before.
class ModuleApi {
 public:
  /// Throws runtime_error with the loader's reason, or with the names of what the library lacks.
  static std::unique_ptr<ModuleApi> Load(const std::string& path);
  ~ModuleApi();
  ModuleApi(const ModuleApi&) = delete;
  ModuleApi& operator=(const ModuleApi&) = delete;

  ExtIdentifyFunction* ExtIdentify = nullptr;
  ExtCreateInstanceFunction* ExtCreateInstance = nullptr;
  ExtDestroyInstanceFunction* ExtDestroyInstance = nullptr;
  ExtCmdFunction* ExtCmd = nullptr;
  ExtConfigureFunction* ExtConfigure = nullptr;
  ExtCopyConfigureFunction* ExtCopyConfigure = nullptr;
  ExtHelpFunction* ExtHelp = nullptr;
  ExtConnectToAppFunction* ExtConnectToApp = nullptr;
  ExtStartAppFunction* ExtStartApp = nullptr;
  ExtStopAppFunction* ExtStopApp = nullptr;
  ExtEquipXmlFunction* ExtEquipXml = nullptr;
  ExtCreateUnitFunction* ExtCreateUnit = nullptr;

 private:
  explicit ModuleApi(std::unique_ptr<platform::DynamicLibrary> library);
  template <class Function>
  void Bind(Function*& function, const char* name);

  std::unique_ptr<platform::DynamicLibrary> library_;
  std::string missing_;
};

}  // namespace gantry::fieldrun
