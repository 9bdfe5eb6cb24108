#include "ui/dialogs.h"

#include "platform/window.h"

namespace gantry {
namespace {

/// The toolkit's implementation; null in a build that has none.
Dialogs* AvailableDialogs() { return nullptr; }

}  // namespace

Dialogs* DialogsFor(void* parent) {
  return platform::IsWindow(parent) ? AvailableDialogs() : nullptr;
}

}  // namespace gantry
