#pragma once

#include "platform/windows/win32.h"
#include "toolkit/dialog_template.h"

namespace gantry::platform {

/// Destroyed by the caller; null when the system refuses.
HICON MakeIcon(Picture picture, int size);

/// Stretches a picture over a window through the given context.
void DrawOnWindow(Picture picture, HWND window, HDC context);

}  // namespace gantry::platform
