#include "platform/dialog_toolkit_library.h"
#include "platform/dialog_window.h"
#include "platform/dynamic_library.h"

namespace gantry::platform {

namespace {

/// Kept open for good: a toolkit doesn't survive being unloaded.
DialogToolkit* OpenToolkit() {
  auto library = DynamicLibrary::Open(ModuleFolder() + LibraryFileName("IntersectDialogs"));
  if (library == nullptr) return nullptr;
  const auto open = reinterpret_cast<OpenDialogToolkit*>(library->Symbol(kOpenDialogToolkit));
  DialogToolkit* const toolkit = open != nullptr ? open(kDialogToolkitVersion) : nullptr;
  if (toolkit != nullptr) static_cast<void>(library.release());
  return toolkit;
}

}  // namespace

DialogToolkit* DialogToolkit::Find() {
  static DialogToolkit* const toolkit = OpenToolkit();
  return toolkit;
}

}  // namespace gantry::platform
