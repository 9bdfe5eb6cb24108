// The host's end: handlers here, their windows over a link.

#include "toolkit/qt/dialogs_apart.h"

#include <vector>

#include "platform/dynamic_library.h"
#include "platform/files.h"
#include "platform/posix/linked_process.h"
#include "toolkit/qt/dialog_calls.h"
#include "toolkit/qt/link.h"

namespace gantry::platform {

namespace {

class DialogsApart;

/// A window in the other process.
class WindowApart : public DialogWindow {
 public:
  WindowApart(DialogsApart& dialogs, size_t depth) : dialogs_(dialogs), depth_(depth) {}

  void Close(int result) override;
  void* Handle() override { return Ask<&DialogWindow::Handle>(); }
  PixelSize ClientSize() override { return Ask<&DialogWindow::ClientSize>(); }
  void Redraw() override { Ask<&DialogWindow::Redraw>(); }
  void Enable(int id, bool isEnabled) override { Ask<&DialogWindow::Enable>(id, isEnabled); }
  void SetToolTip(int id, const std::string& text) override {
    Ask<&DialogWindow::SetToolTip>(id, text);
  }
  PixelRect Rect(int id) override { return Ask<&DialogWindow::Rect>(id); }
  void Move(int id, const PixelRect& rect) override { Ask<&DialogWindow::Move>(id, rect); }
  void Focus(int id) override { Ask<&DialogWindow::Focus>(id); }
  std::string Text(int id) override { return Ask<&DialogWindow::Text>(id); }
  void SetText(int id, const std::string& text) override { Ask<&DialogWindow::SetText>(id, text); }
  void PutCaretBehindText(int id) override { Ask<&DialogWindow::PutCaretBehindText>(id); }
  bool IsChecked(int id) override { return Ask<&DialogWindow::IsChecked>(id); }
  void SetChecked(int id, bool isChecked) override {
    Ask<&DialogWindow::SetChecked>(id, isChecked);
  }
  void SetItems(int id, const std::vector<std::string>& items) override {
    Ask<&DialogWindow::SetItems>(id, items);
  }
  int Selection(int id) override { return Ask<&DialogWindow::Selection>(id); }
  void Select(int id, int index) override { Ask<&DialogWindow::Select>(id, index); }
  void SetColumns(int id, const std::vector<ListColumn>& columns) override {
    Ask<&DialogWindow::SetColumns>(id, columns);
  }
  void AddRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) override {
    Ask<&DialogWindow::AddRows>(id, rows, picture);
  }
  void RemoveRows(int id, const std::vector<size_t>& rows) override {
    Ask<&DialogWindow::RemoveRows>(id, rows);
  }
  std::vector<size_t> SelectedRows(int id) override { return Ask<&DialogWindow::SelectedRows>(id); }
  void SelectAll(int id) override { Ask<&DialogWindow::SelectAll>(id); }
  void InvertSelection(int id) override { Ask<&DialogWindow::InvertSelection>(id); }
  void SetTree(int id, std::vector<TreeItem> items) override {
    Ask<&DialogWindow::SetTree>(id, items);
  }
  void SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) override {
    Ask<&DialogWindow::SetTreeChecked>(id, places, isChecked);
  }
  void ExpandTree(int id, bool isExpanded) override {
    Ask<&DialogWindow::ExpandTree>(id, isExpanded);
  }
  void ShowMessage(const std::string& text) override { Ask<&DialogWindow::ShowMessage>(text); }
  std::optional<std::string> AskForFile(const FileRequest& request) override;
  int RunDialog(DialogHandler& handler) override;
  bool ShowHelp(const std::string& file, uint32_t topic) override {
    return Ask<&DialogWindow::ShowHelp>(file, topic);
  }
  void SetWaitCursor(bool isWaiting) override { Ask<&DialogWindow::SetWaitCursor>(isWaiting); }
  void Pause(int milliseconds) override { Ask<&DialogWindow::Pause>(milliseconds); }

  /// What the handler has closed it with.
  std::optional<int> ClosedWith() const { return closedWith_; }

 private:
  template <auto kMethod, class... Arguments>
  CallResult<kMethod> Ask(const Arguments&... arguments) {
    using Result = CallResult<kMethod>;
    Packet answer = Call(WindowCalls::Number<kMethod>(), Packets(kMethod, arguments...));
    if constexpr (!std::is_void_v<Result>) return answer.Take<Result>();
  }
  /// The arguments as the types that the other end takes.
  template <class Result, class... Parameters>
  static Packet Packets(Result (DialogWindow::*)(Parameters...),
                        const std::decay_t<Parameters>&... arguments) {
    Packet packet;
    (packet.Put(arguments), ...);
    return packet;
  }
  Packet Call(size_t method, const Packet& arguments);

  DialogsApart& dialogs_;
  size_t depth_;
  std::optional<int> closedWith_;
};

/// The open dialogs of one process, from the first to the one on top.
class DialogsApart {
 public:
  explicit DialogsApart(Descriptor socket)
      : link_(std::move(socket), [this](Packet& call) {
          Handle(call.Take<DialogEvent>());
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
    request.Put(open_.size()).Put(ToSend(handler.Template()));
    open_.push_back({handler, window});
    const int result = link_.Call(request).Take<int>();
    open_.pop_back();
    return result;
  }

  void Handle(const DialogEvent& event) {
    auto& [handler, window] = open_.at(event.depth);
    switch (event.kind) {
      case DialogEvent::Kind::kOpen:
        return handler.OnOpen(window);
      case DialogEvent::Kind::kButton:
        return handler.OnButton(window, event.id);
      case DialogEvent::Kind::kSelection:
        return handler.OnSelection(window, event.id);
      case DialogEvent::Kind::kTreeCheck:
        return handler.OnTreeCheck(window, event.id, event.place);
      case DialogEvent::Kind::kSizing:
        return handler.OnSizing(event.id);
      case DialogEvent::Kind::kSize:
        return handler.OnSize(window, event.size);
    }
  }

  Link link_;
  std::vector<OpenDialog> open_;
};

Packet WindowApart::Call(size_t method, const Packet& arguments) {
  Packet call;
  call.Put(Request::kWindowCall).Put(depth_).Put(method);
  return dialogs_.Call(call.Append(arguments));
}

void WindowApart::Close(int result) {
  closedWith_ = result;
  try {
    Ask<&DialogWindow::Close>(result);
  } catch (const LinkFailure&) {
    // There is nothing left to close.
  }
}

std::optional<std::string> WindowApart::AskForFile(const FileRequest& request) {
  Packet call;
  call.Put(Request::kAskForFile).Put(depth_);
  call.Put(std::string(request.defaultExtension)).Put(std::string(request.filters));
  call.Put(request.folder);
  return dialogs_.Call(call).Take<std::optional<std::string>>();
}

int WindowApart::RunDialog(DialogHandler& handler) { return dialogs_.RunOver(handler, depth_); }

std::string Program() { return ModuleFolder() + ProgramFileName("IntersectDialogs"); }

}  // namespace

bool CanRunApart() { return CanOpenForReading(Program()); }

int RunApart(DialogHandler& handler, void* parent) {
  Descriptor socket = StartLinkedProcess(Program());
  if (!socket.IsOpen()) return kCancelButton;
  return DialogsApart(std::move(socket)).RunFirst(handler, parent);
}

}  // namespace gantry::platform
