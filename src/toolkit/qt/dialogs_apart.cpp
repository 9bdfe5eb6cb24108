// The host's end: handlers here, their windows over a link.

#include "toolkit/qt/dialogs_apart.h"

#include <tuple>
#include <vector>

#include "platform/dynamic_library.h"
#include "platform/files.h"
#include "platform/posix/linked_process.h"
#include "toolkit/qt/dialog_calls.h"
#include "toolkit/qt/link.h"

namespace gantry::platform {

namespace {

class DialogsApart;

/// The calls of a window in the other process.
class CallsApart : public DialogWindow {
 public:
  CallsApart(DialogsApart& dialogs, size_t depth) : dialogs_(dialogs), depth_(depth) {}

#define CALL(Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return Ask<Result>(WindowCall::k##Name, std::tie Arguments); }
#include "toolkit/window_calls.inc"
  int RunDialog(DialogHandler& handler) override;

 private:
  template <class Result, class... Arguments>
  Result Ask(WindowCall method, const std::tuple<Arguments&...>& arguments) {
    Packet call;
    call.Put(Request::kWindowCall).Put(depth_).Put(method);
    std::apply([&call](const auto&... values) { (call.Put(values), ...); }, arguments);
    Packet answer = Call(call);
    if constexpr (!std::is_void_v<Result>) return answer.Take<Result>();
  }
  Packet Call(const Packet& call);

  DialogsApart& dialogs_;
  size_t depth_;
};

class WindowApart : public CallsApart {
 public:
  using CallsApart::CallsApart;

  void Close(int result) override {
    closedWith_ = result;
    try {
      CallsApart::Close(result);
    } catch (const LinkFailure&) {
      // There is nothing left to close.
    }
  }
  /// What the handler has closed it with.
  std::optional<int> ClosedWith() const { return closedWith_; }

 private:
  std::optional<int> closedWith_;
};

/// The open dialogs of one process, from the first to the one on top.
class DialogsApart {
 public:
  explicit DialogsApart(Descriptor socket)
      : link_(std::move(socket), [this](Packet& call) {
          Handle(call);
          return Packet();
        }) {}

  Packet Call(const Packet& call) { return link_.Call(call); }

  int RunFirst(DialogHandler& handler, void* parent) {
    WindowApart window(*this, 0);
    try {
      return Run(handler, window, Packet().Put(Request::kRun).Put(parent));
    } catch (const LinkFailure&) {
      open_.clear();
      if (!window.ClosedWith()) handler.OnButton(window, kCancelButton);
      return window.ClosedWith().value_or(kCancelButton);
    }
  }

  int RunOver(DialogHandler& handler, size_t depth) {
    WindowApart window(*this, open_.size());
    return Run(handler, window, Packet().Put(Request::kRunOver).Put(depth));
  }

 private:
  struct OpenDialog {
    DialogHandler& handler;
    WindowApart& window;
  };

  int Run(DialogHandler& handler, WindowApart& window, Packet request) {
    const DialogTemplate& shape = handler.Template();
    request.Put(open_.size()).Put(shape).Put(shape.controls);
    open_.push_back({handler, window});
    const int result = link_.Call(request).Take<int>();
    open_.pop_back();
    return result;
  }

  void Handle(Packet& call) {
    auto& [handler, window] = open_.at(call.Take<size_t>());
    const auto kind = call.Take<HandlerCall>();
    if (kind == HandlerCall::kOpen) return handler.OnOpen(window);
    if (kind == HandlerCall::kSize) return handler.OnSize(window, call.Take<PixelSize>());
    const int number = call.Take<int>();  // of a control, or an edge
    if (kind == HandlerCall::kButton) return handler.OnButton(window, number);
    if (kind == HandlerCall::kSelection) return handler.OnSelection(window, number);
    if (kind == HandlerCall::kSizing) return handler.OnSizing(window, number);
    handler.OnTreeCheck(window, number, call.Take<TreePlace>());
  }

  Link link_;
  std::vector<OpenDialog> open_;
};

Packet CallsApart::Call(const Packet& call) { return dialogs_.Call(call); }

int CallsApart::RunDialog(DialogHandler& handler) { return dialogs_.RunOver(handler, depth_); }

std::string Program() { return ModuleFolder() + ProgramFileName("IntersectDialogs"); }

}  // namespace

bool CanRunApart() { return CanOpenForReading(Program()); }

int RunApart(DialogHandler& handler, void* parent) {
  Descriptor socket = StartLinkedProcess(Program());
  if (!socket.IsOpen()) return kCancelButton;
  return DialogsApart(std::move(socket)).RunFirst(handler, parent);
}

}  // namespace gantry::platform
