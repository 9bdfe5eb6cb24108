#include "platform/dynamic_library.h"
#include "toolkit/dialog_toolkit_library.h"
#include "toolkit/dialog_window.h"

namespace gantry::platform {

namespace {

/// Given up with the module; the library itself stays for good, as it asks of the loader.
std::unique_ptr<DynamicLibrary> OpenLibrary() {
  return DynamicLibrary::Open(ModuleFolder() + LibraryFileName("IntersectDialogs"));
}

DialogToolkit* OpenToolkit(const DynamicLibrary* library) {
  OpenDialogToolkit* open = nullptr;
  const bool isThere = library != nullptr && library->Bind(open, kOpenDialogToolkit);
  return isThere ? open(kDialogToolkitVersion) : nullptr;
}

}  // namespace

DialogToolkit* DialogToolkit::Find() {
  static const std::unique_ptr<DynamicLibrary> library = OpenLibrary();
  static DialogToolkit* const toolkit = OpenToolkit(library.get());
  return toolkit;
}

}  // namespace gantry::platform
