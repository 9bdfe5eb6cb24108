#pragma once

#include "toolkit/dialog_window.h"

namespace gantry::platform {

/// Shows a dialog over a window that another client of the display, or another toolkit, has made,
/// until it is closed; what it was closed with. There must be an application object.
int RunOver(DialogHandler& handler, void* parent);

/// The whole of the process that shows a host's dialogs: runs one, and those over it, as the host
/// asks for over the standard input. Ends at once when the host has gone.
void ServeDialogs();

/// Only what such a process begins with. Where Qt can't show windows, it ends the process itself.
void TryDialogs();

}  // namespace gantry::platform
