// The end of the link that has the windows.

#include "toolkit/qt/dialog_server.h"

#include <QApplication>
#include <QWindow>
#include <memory>
#include <thread>
#include <tuple>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include "toolkit/qt/dialog_calls.h"
#include "toolkit/qt/link.h"
#include "toolkit/qt/qt_dialog.h"

namespace gantry::platform {

namespace {

class DialogServer;

template <class Result, class... Parameters>
Packet Invoke(DialogWindow& window, Result (DialogWindow::*call)(Parameters...),
              Packet& arguments) {
  // Braces, so that they are taken in their order.
  std::tuple<std::decay_t<Parameters>...> values{arguments.Take<std::decay_t<Parameters>>()...};
  const auto make = [&](auto&... value) { return (window.*call)(std::move(value)...); };
  if constexpr (std::is_void_v<Result>) {
    std::apply(make, values);
    return Packet();
  } else {
    return Packet().Put(std::apply(make, values));
  }
}

Packet CallWindow(DialogWindow& window, Packet& call) {
  switch (call.Take<WindowCall>()) {
#define CALL(Result, Name, Parameters, Arguments) \
  case WindowCall::k##Name:                       \
    return Invoke(window, &DialogWindow::Name, call);
#include "toolkit/window_calls.inc"
  }
  throw LinkFailure("The link knows no such call");
}

/// A handler in the host's process.
class HandlerApart : public DialogHandler {
 public:
  /// `call` is the one that it came with, whose texts it shows.
  HandlerApart(DialogServer& server, Packet& call)
      : DialogHandler(template_),
        server_(server),
        depth_(call.Take<size_t>()),
        template_(call.Take<DialogTemplate>()),
        rows_(call.Take<std::vector<ControlRow>>()) {
    template_.controls = rows_;
  }

  void OnOpen(DialogWindow& window) override;
  void OnButton(DialogWindow& /*window*/, int id) override { Tell(HandlerCall::kButton, id); }
  void OnSelection(DialogWindow& /*window*/, int id) override { Tell(HandlerCall::kSelection, id); }
  void OnTreeCheck(DialogWindow& /*window*/, int id, const TreePlace& place) override {
    Tell(HandlerCall::kTreeCheck, id, place);
  }
  void OnSizing(DialogWindow& /*window*/, int edge) override { Tell(HandlerCall::kSizing, edge); }
  void OnSize(DialogWindow& /*window*/, PixelSize size) override { Tell(HandlerCall::kSize, size); }

 private:
  template <class... Values>
  void Tell(HandlerCall call, const Values&... values);

  DialogServer& server_;
  size_t depth_;
  DialogTemplate template_;
  const std::vector<ControlRow> rows_;
};

/// The open windows, from the first to the one on top.
class DialogServer {
 public:
  explicit DialogServer(Descriptor socket)
      : link_(std::move(socket), [this](Packet& call) { return Serve(call); }) {}

  void ServeOne() { link_.ServeOne(); }
  /// Nothing is left to do once the host has gone, and the toolkit lets no exception through.
  void Tell(const Packet& call) {
    try {
      link_.Call(call);
    } catch (const LinkFailure&) {
      ::_exit(0);
    }
  }
  void Opened(size_t depth, DialogWindow& window) {
    windows_.resize(depth);
    windows_.push_back(&window);
  }

 private:
  Packet Serve(Packet& call) {
    const auto request = call.Take<Request>();
    if (request == Request::kRun) return Run(call);
    const auto depth = call.Take<size_t>();
    if (depth >= windows_.size()) throw LinkFailure("The link knows no such window");
    DialogWindow& window = *windows_[depth];
    if (request == Request::kWindowCall) return CallWindow(window, call);
    HandlerApart handler(*this, call);
    return Packet().Put(window.RunDialog(handler));
  }

  Packet Run(Packet& call) {
    auto* const parent = call.Take<void*>();
    HandlerApart handler(*this, call);
    return Packet().Put(RunOver(handler, parent));
  }

  Link link_;
  std::vector<DialogWindow*> windows_;
};

void HandlerApart::OnOpen(DialogWindow& window) {
  server_.Opened(depth_, window);
  Tell(HandlerCall::kOpen);
}

template <class... Values>
void HandlerApart::Tell(HandlerCall call, const Values&... values) {
  Packet packet;
  packet.Put(depth_).Put(call);
  (packet.Put(values), ...);
  server_.Tell(packet);
}

class Application {
 private:
  char name_[10] = "Intersect";
  char option_[10] = "-platform";
  char platform_[4] = "xcb";
  char* arguments_[4] = {name_, option_, platform_, nullptr};
  int count_ = 3;
  QApplication application_{count_, arguments_};
};

/// Ends this process when the other end of a socket is closed, whatever else it waits for.
void EndWith(int socket) {
  std::thread([socket] {
    pollfd state{socket, 0, 0};
    while (::poll(&state, 1, -1) != 1) {
    }
    ::_exit(0);
  }).detach();
}

}  // namespace

int RunOver(DialogHandler& handler, void* parent) {
  const auto id = reinterpret_cast<WId>(parent);
  if (QWidget* const widget = QWidget::find(id)) return QtDialog(handler, widget).exec();
  const std::unique_ptr<QWindow> foreign(QWindow::fromWinId(id));
  QtDialog dialog(handler, nullptr);
  dialog.winId();  // makes the window, which is needed now
  if (foreign != nullptr) dialog.windowHandle()->setTransientParent(foreign.get());
  return dialog.exec();
}

void ServeDialogs() {
  EndWith(STDIN_FILENO);
  const Application application;
  QApplication::setQuitOnLastWindowClosed(false);
  DialogServer(Descriptor(STDIN_FILENO)).ServeOne();
}

void TryDialogs() { const Application application; }

}  // namespace gantry::platform
