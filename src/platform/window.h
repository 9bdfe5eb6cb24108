#pragma once

namespace gantry::platform {

/// True when `window` is the handle of a live window: an HWND on Windows, on POSIX an X11 window id
/// that the display knows. Null is no window, and without a display nothing is.
bool IsWindow(void* window);

/// What a program without a window of its own shows its dialogs over: the console's window on
/// Windows, else the screen. Null without a display.
void* ScreenWindow();

}  // namespace gantry::platform
