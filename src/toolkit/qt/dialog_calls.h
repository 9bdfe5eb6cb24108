#pragma once

#include <array>
#include <concepts>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "toolkit/dialog_window.h"
#include "toolkit/qt/packet.h"

// What goes over the link between a dialog's handler, in the host's process, and its window, in
// that of the dialogs. Open dialogs are known by their depth: 0 for the first, 1 for one over it.

namespace gantry::platform {

template <class Value, class Record>
concept Is = std::same_as<std::remove_const_t<Value>, Record>;

auto FieldsOf(Is<ListColumn> auto& column) { return std::tie(column.title, column.width); }
auto FieldsOf(Is<TreeItem> auto& item) {
  return std::tie(item.text, item.picture, item.isChecked, item.isExpanded, item.data,
                  item.children);
}

/// A template with texts of its own.
struct SentControl {
  ControlKind kind{};
  int id = 0;
  std::string caption;
  DialogPlace place;
  uint32_t style = 0;
  std::optional<std::string> toolTip;
};
auto FieldsOf(Is<SentControl> auto& control) {
  return std::tie(control.kind, control.id, control.caption, control.place, control.style,
                  control.toolTip);
}
struct SentTemplate {
  int id = 0;
  std::string caption;
  int width = 0;
  int height = 0;
  std::vector<SentControl> controls;
  bool isResizable = false;
};
auto FieldsOf(Is<SentTemplate> auto& shape) {
  return std::tie(shape.id, shape.caption, shape.width, shape.height, shape.controls,
                  shape.isResizable);
}
SentTemplate ToSend(const DialogTemplate& shape);

/// A template as it came over the link.
class ReceivedTemplate {
 public:
  explicit ReceivedTemplate(SentTemplate sent);
  ReceivedTemplate(const ReceivedTemplate&) = delete;
  ReceivedTemplate& operator=(const ReceivedTemplate&) = delete;

  const DialogTemplate& Template() const { return template_; }

 private:
  const SentTemplate sent_;
  std::vector<ControlRow> rows_;
  DialogTemplate template_;
};

/// One call of a handler, which its window makes.
struct DialogEvent {
  enum class Kind { kOpen, kButton, kSelection, kTreeCheck, kSizing, kSize };
  Kind kind = Kind::kOpen;
  size_t depth = 0;
  int id = 0;  ///< of a control, or an edge
  TreePlace place = {};
  PixelSize size = {};
};

/// What the handler's side asks for.
enum class Request { kRun, kRunOver, kAskForFile, kWindowCall };

template <class Result, class... Arguments>
Result ResultOf(Result (DialogWindow::*method)(Arguments...));
template <auto kMethod>
using CallResult = decltype(ResultOf(kMethod));

/// The calls of a window whose arguments go over the link as they are, by their place in the list.
template <auto... kMethods>
struct CallList {
  using Invoke = Packet (*)(DialogWindow& window, Packet& arguments);

  template <auto kMethod>
  static constexpr size_t Number() {
    size_t number = 0;
    bool isFound = false;
    const auto look = [&]<auto kOther>() {
      isFound = isFound || IsSame<kMethod, kOther>();
      if (!isFound) ++number;
    };
    (look.template operator()<kMethods>(), ...);
    return number;
  }

  /// Makes the call of a number on a window.
  static Packet Call(size_t number, DialogWindow& window, Packet& arguments) {
    static constexpr std::array<Invoke, sizeof...(kMethods)> kCalls = {&InvokeOne<kMethods>...};
    if (number >= kCalls.size()) throw LinkFailure("The link knows no such call");
    return kCalls[number](window, arguments);
  }

 private:
  template <auto kOne, auto kOther>
  static constexpr bool IsSame() {
    if constexpr (std::is_same_v<decltype(kOne), decltype(kOther)>) return kOne == kOther;
    return false;
  }
  template <auto kMethod>
  static Packet InvokeOne(DialogWindow& window, Packet& arguments) {
    return Invoked(window, kMethod, arguments);
  }
  template <class Result, class... Arguments>
  static Packet Invoked(DialogWindow& window, Result (DialogWindow::*method)(Arguments...),
                        Packet& arguments) {
    // Braces, so that they are taken in their order.
    std::tuple<std::decay_t<Arguments>...> values{arguments.Take<std::decay_t<Arguments>>()...};
    const auto call = [&](auto&... value) { return (window.*method)(std::move(value)...); };
    if constexpr (std::is_void_v<Result>) {
      std::apply(call, values);
      return Packet();
    } else {
      return Packet().Put(std::apply(call, values));
    }
  }
};

using WindowCalls =
    CallList<&DialogWindow::Close, &DialogWindow::Handle, &DialogWindow::ClientSize,
             &DialogWindow::Redraw, &DialogWindow::Enable, &DialogWindow::SetToolTip,
             &DialogWindow::Rect, &DialogWindow::Move, &DialogWindow::Focus, &DialogWindow::Text,
             &DialogWindow::SetText, &DialogWindow::PutCaretBehindText, &DialogWindow::IsChecked,
             &DialogWindow::SetChecked, &DialogWindow::SetItems, &DialogWindow::Selection,
             &DialogWindow::Select, &DialogWindow::SetColumns, &DialogWindow::AddRows,
             &DialogWindow::RemoveRows, &DialogWindow::SelectedRows, &DialogWindow::SelectAll,
             &DialogWindow::InvertSelection, &DialogWindow::SetTree, &DialogWindow::SetTreeChecked,
             &DialogWindow::ExpandTree, &DialogWindow::ShowMessage, &DialogWindow::ShowHelp,
             &DialogWindow::SetWaitCursor, &DialogWindow::Pause>;

}  // namespace gantry::platform
