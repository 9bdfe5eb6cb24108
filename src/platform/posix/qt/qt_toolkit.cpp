#include <QApplication>
#include <QLibraryInfo>
#include <QPluginLoader>
#include <QThread>
#include <QWindow>
#include <clocale>
#include <memory>
#include <string>

#include <xcb/xcb.h>

#include "platform/dialog_toolkit_library.h"
#include "platform/posix/qt/qt_dialog.h"
#include "platform/posix/qt/qt_picture.h"

namespace gantry::platform {

namespace {

/// Qt ends the process when the plugin for the display can't be loaded; asked first, it says so.
bool HasDisplayPlugin() {
  const QString folder = QLibraryInfo::path(QLibraryInfo::PluginsPath);
  return QPluginLoader(folder + QStringLiteral("/platforms/libqxcb.so")).load();
}

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// The application object that Qt wants: the host's own, or one for the length of a dialog, so that
/// nothing of the display is held in between.
class ApplicationScope {
 public:
  ApplicationScope() {
    if (QCoreApplication::instance() != nullptr || !HasDisplayPlugin()) return;
    // Qt ends the process over a display that refuses it. One with a client refuses no other: some
    // are away for a moment when their last client leaves.
    display_.reset(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(display_.get()) != 0) return;
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    own_ = std::make_unique<QApplication>(count_, arguments_);
    std::setlocale(LC_ALL, locale.c_str());  // the host's own business
    QApplication::setQuitOnLastWindowClosed(false);
  }

  /// Whether windows can be shown from this thread.
  bool IsUsable() const {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    return application != nullptr && application->thread() == QThread::currentThread();
  }

 private:
  char name_[10] = "Intersect";
  char platformOption_[10] = "-platform";
  char platform_[4] = "xcb";
  char* arguments_[4] = {name_, platformOption_, platform_, nullptr};
  int count_ = 3;
  Connection display_;
  std::unique_ptr<QApplication> own_;
};

/// Runs a dialog over a window that another client of the display, or another toolkit, has made.
int RunOver(DialogHandler& handler, WId parent) {
  if (QWidget* const widget = QWidget::find(parent)) return QtDialog(handler, widget).exec();
  const std::unique_ptr<QWindow> foreign(QWindow::fromWinId(parent));
  QtDialog dialog(handler, nullptr);
  dialog.winId();  // makes the window, which is needed now
  if (foreign != nullptr) dialog.windowHandle()->setTransientParent(foreign.get());
  return dialog.exec();
}

class QtToolkit : public DialogToolkit {
 public:
  int Run(DialogHandler& handler, void* parent) override {
    const ApplicationScope application;
    if (!application.IsUsable()) return kCancelButton;
    return RunOver(handler, reinterpret_cast<WId>(parent));
  }

  void Draw(Picture picture, void* window, void* /*deviceContext*/) override {
    DrawOnWindow(picture, static_cast<uint32_t>(reinterpret_cast<uintptr_t>(window)));
  }
};

}  // namespace

}  // namespace gantry::platform

extern "C" __attribute__((visibility("default"))) gantry::platform::DialogToolkit*
GantryOpenDialogToolkit(uint32_t version) {
  static gantry::platform::QtToolkit toolkit;
  return version == gantry::platform::kDialogToolkitVersion ? &toolkit : nullptr;
}
