#pragma once

#include <cstdint>

#include "toolkit/dialog_window.h"

// How the module and the library with its dialogs find each other, where they are two files.

namespace gantry::platform {

/// Raised with every change of `dialog_window.h` or `dialog_template.h`: the two files must match.
inline constexpr uint32_t kDialogToolkitVersion = 3;

/// Null for another version. The toolkit lives as long as the library.
using OpenDialogToolkit = DialogToolkit*(uint32_t version);
inline constexpr const char* kOpenDialogToolkit = "GantryOpenDialogToolkit";

}  // namespace gantry::platform
