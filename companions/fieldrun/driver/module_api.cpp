#include "fieldrun/driver/module_api.h"

#include <stdexcept>

#include "platform/dynamic_library.h"

namespace gantry::fieldrun {

template <class Function>
void ModuleApi::Bind(Function*& function, const char* name) {
  if (library_->Bind(function, name)) return;
  missing_ += (missing_.empty() ? "" : ", ") + std::string(name);
}

ModuleApi::ModuleApi(std::unique_ptr<platform::DynamicLibrary> library)
    : library_(std::move(library)) {
  Bind(ExtIdentify, "ExtIdentify");
  Bind(ExtCreateInstance, "ExtCreateInstance");
  Bind(ExtDestroyInstance, "ExtDestroyInstance");
  Bind(ExtCmd, "ExtCmd");
  Bind(ExtConfigure, "ExtConfigure");
  Bind(ExtCopyConfigure, "ExtCopyConfigure");
  Bind(ExtHelp, "ExtHelp");
  Bind(ExtConnectToApp, "ExtConnectToApp");
  Bind(ExtStartApp, "ExtStartApp");
  Bind(ExtStopApp, "ExtStopApp");
  Bind(ExtEquipXml, "ExtEquipXml");
  Bind(ExtCreateUnit, "ExtCreateUnit");
}

ModuleApi::~ModuleApi() = default;

std::unique_ptr<ModuleApi> ModuleApi::Load(const std::string& path) {
  std::string reason;
  auto library = platform::DynamicLibrary::Open(path, &reason);
  if (library == nullptr) {
    throw std::runtime_error("The module " + path + " can't be loaded: " + reason);
  }
  std::unique_ptr<ModuleApi> api(new ModuleApi(std::move(library)));
  if (!api->missing_.empty()) {
    throw std::runtime_error("The library " + path + " is no driver module: it lacks " +
                             api->missing_);
  }
  return api;
}

}  // namespace gantry::fieldrun
