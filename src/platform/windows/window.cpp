#include "platform/window.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

bool IsWindow(void* window) { return ::IsWindow(static_cast<HWND>(window)) != 0; }

void* ScreenWindow() {
  const HWND console = ::GetConsoleWindow();
  return console != nullptr ? console : ::GetDesktopWindow();
}

}  // namespace gantry::platform
