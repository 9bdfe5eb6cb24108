#pragma once

#include "toolkit/dialog_window.h"

namespace gantry::platform {

/// Whether the program for that process lies beside this library.
bool CanRunApart();

/// Runs a dialog in a process of its own, so that the host outlives a display that goes away while
/// the dialog is open: the dialog is cancelled then, as it is when that process can't be started.
/// What a handler throws comes out, and the dialog goes.
int RunApart(DialogHandler& handler, void* parent);

}  // namespace gantry::platform
