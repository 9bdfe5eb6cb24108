#include "fieldrun/driver/dialog_parts.h"

#include <dlfcn.h>

#include "fieldrun/driver/module_api.h"
#include "fieldrun/platform/program_output.h"
#include "platform/dynamic_library.h"
#include "platform/files.h"
#include "toolkit/dialog_toolkit_library.h"

namespace gantry::fieldrun {
namespace {

std::string FolderOf(const ModuleApi& api) {
  Dl_info info{};
  const bool isKnown = ::dladdr(reinterpret_cast<void*>(api.ExtConfigure), &info) != 0;
  return isKnown ? platform::DirectoryOf(info.dli_fname) + platform::kPathSeparator : "";
}

}  // namespace

std::string DialogFault(const ModuleApi& api) {
  const std::string folder = FolderOf(api);
  std::string reason;
  const auto library = platform::DynamicLibrary::Open(
      folder + platform::LibraryFileName("IntersectDialogs"), &reason);
  if (library == nullptr) return reason;
  platform::OpenDialogToolkit* open = nullptr;
  const bool isThere = library->Bind(open, platform::kOpenDialogToolkit);
  if (isThere && open(platform::kDialogToolkitVersion) != nullptr) return {};
  return folder + platform::ProgramFileName("IntersectDialogs") +
         " is missing, or isn't of the module's version";
}

std::string DialogTrialFault(const ModuleApi& api) {
  const std::string program = FolderOf(api) + platform::ProgramFileName("IntersectDialogs");
  if (OutputOf(program, {"--try"}).status == 0) return {};
  return program + " can't show any; what it said stands above";
}

}  // namespace gantry::fieldrun
