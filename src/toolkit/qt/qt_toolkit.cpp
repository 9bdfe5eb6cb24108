#include <QApplication>
#include <QThread>

#include "toolkit/dialog_toolkit_library.h"
#include "toolkit/qt/dialog_server.h"
#include "toolkit/qt/dialogs_apart.h"
#include "toolkit/qt/qt_picture.h"

namespace gantry::platform {

namespace {

/// Whether the host is a Qt program that shows windows from this thread.
bool IsInHostsHands() {
  const auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
  return application != nullptr && application->thread() == QThread::currentThread();
}

class QtToolkit : public DialogToolkit {
 public:
  int Run(DialogHandler& handler, void* parent) override {
    return IsInHostsHands() ? RunOver(handler, parent) : RunApart(handler, parent);
  }

  void Draw(Picture picture, void* window, void* /*deviceContext*/) override {
    DrawOnWindow(picture, static_cast<uint32_t>(reinterpret_cast<uintptr_t>(window)));
  }
};

}  // namespace

}  // namespace gantry::platform

extern "C" __attribute__((visibility("default"))) gantry::platform::DialogToolkit*
GantryOpenDialogToolkit(uint32_t version) {
  using namespace gantry::platform;
  static QtToolkit toolkit;
  const bool isUsable = version == kDialogToolkitVersion && (IsInHostsHands() || CanRunApart());
  return isUsable ? &toolkit : nullptr;
}

/// The entries of the program beside the library.
extern "C" __attribute__((visibility("default"))) void GantryServeDialogs() {
  gantry::platform::ServeDialogs();
}
extern "C" __attribute__((visibility("default"))) void GantryTryDialogs() {
  gantry::platform::TryDialogs();
}
