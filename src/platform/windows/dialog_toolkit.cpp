#include "platform/dialog_window.h"

namespace gantry::platform {

DialogToolkit* DialogToolkit::Find() { return nullptr; }

}  // namespace gantry::platform
