#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

class DialogHandler;

/// In pixels of the dialog's client area.
struct PixelRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
  bool operator==(const PixelRect&) const = default;
};

struct PixelSize {
  int width = 0;
  int height = 0;
  bool operator==(const PixelSize&) const = default;
};

struct ListColumn {
  std::string title;
  int width = 0;  ///< pixels at 96 dots to the inch
};

/// One item of a tree.
struct TreeItem {
  std::string text;
  int picture = 0;
  bool isChecked = false;
  bool isExpanded = false;  ///< to be opened, when it isn't already
  uintptr_t data = 0;       ///< the handler's own, unique in the tree
  std::vector<TreeItem> children = {};
};

/// The place of an item: its position in the top level and, of a child, below that.
struct TreePlace {
  size_t parent = 0;
  std::optional<size_t> child = std::nullopt;
  bool operator==(const TreePlace&) const = default;
};

/// Of the items of a tree's top level.
auto& ItemAt(auto& items, const TreePlace& place) {
  auto& parent = items.at(place.parent);
  return place.child ? parent.children.at(*place.child) : parent;
}

struct FileRequest {
  const char* defaultExtension;
  const char* filters;      ///< pairs of a name and a pattern, each followed by "|"
  std::string folder = {};  ///< to begin in; where it is empty or isn't there, the system chooses
};

/// The buttons that end every dialog; Enter and Escape press them too.
enum DialogButton : int { kOkButton = 1, kCancelButton = 2 };

/// An open dialog, its controls addressed by their ids. Only `DialogToolkit` makes one, for the
/// length of a run; it is used on that run's thread. An id that no control of the
/// right kind has is a fault. Texts
/// are in the host's code page. Once the window is lost, with the display it was on, every call but
/// `Close` throws: the toolkit's own exception, which a handler lets through.
class DialogWindow {
 public:
  virtual ~DialogWindow() = default;

  /// Another dialog over this one; its result.
  virtual int RunDialog(DialogHandler& handler) = 0;
#define CALL(Result, Name, Parameters, Arguments) virtual Result Name Parameters = 0;
#include "toolkit/window_calls.inc"
};

/// What a dialog shows and decides: it is told what happens to its window.
class DialogHandler {
 public:
  /// The template outlives it.
  explicit DialogHandler(const DialogTemplate& shape) : template_(shape) {}
  virtual ~DialogHandler() = default;

  const DialogTemplate& Template() const { return template_; }
  /// The controls are there, nothing is shown yet.
  virtual void OnOpen(DialogWindow& window) = 0;
  /// A button or check box was pressed.
  virtual void OnButton(DialogWindow& window, int id) = 0;
  /// The user chose another item of a drop list.
  virtual void OnSelection(DialogWindow& /*window*/, int /*id*/) {}
  /// The user toggles the check box of an item; comes once for each time.
  virtual void OnTreeCheck(DialogWindow& /*window*/, int /*id*/, const TreePlace& /*place*/) {}
  /// The user drags this edge of the window, by the number that Windows has for it.
  virtual void OnSizing(DialogWindow& /*window*/, int /*edge*/) {}
  /// The client area has this size now; comes once before the window is shown.
  virtual void OnSize(DialogWindow& /*window*/, PixelSize /*size*/) {}

 private:
  const DialogTemplate& template_;
};

/// The toolkit of this machine.
class DialogToolkit {
 public:
  virtual ~DialogToolkit() = default;

  /// Shows a dialog modally over a window of the host until it is closed; what it was closed with,
  /// `kCancelButton` when it could not be shown. The handler of a window that is lost is told of
  /// its "Cancel" button.
  virtual int Run(DialogHandler& handler, void* parent) = 0;
  /// A picture stretched over the client area of a window.
  virtual void Draw(Picture picture, void* window, void* deviceContext) = 0;

  /// Null where there is none. Found at the first call, and kept.
  static DialogToolkit* Find();
};

}  // namespace gantry::platform
