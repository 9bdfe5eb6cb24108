#include "toolkit/dialog_window.h"
#include "toolkit/win32/win_dialog.h"
#include "toolkit/win32/win_picture.h"

namespace gantry::platform {

namespace {

class WinToolkit : public DialogToolkit {
 public:
  int Run(DialogHandler& handler, void* parent) override {
    return WinDialog(handler).Run(static_cast<HWND>(parent));
  }

  void Draw(Picture picture, void* window, void* deviceContext) override {
    DrawOnWindow(picture, static_cast<HWND>(window), static_cast<HDC>(deviceContext));
  }
};

}  // namespace

DialogToolkit* DialogToolkit::Find() {
  static WinToolkit toolkit;
  return &toolkit;
}

}  // namespace gantry::platform
