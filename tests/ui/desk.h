#pragma once

#include <functional>
#include <string>
#include <vector>

#include "toolkit/dialog_window.h"

namespace gantry::test {

/// Someone before a dialog of this machine's toolkit, who works with keys and mouse while the host
/// is in the dialog on its own thread. What is done returns when the host has dealt with all of it.
/// Ids are those of the window in front.
class Desk {
 public:
  virtual ~Desk() = default;

  /// Runs on the host's thread, within the dialog's loop.
  virtual void InHost(const std::function<void()>& action) = 0;

  virtual std::string Title() = 0;
  /// The text of the message in front.
  virtual std::string Message() = 0;
  /// The id of the control that has the keyboard.
  virtual int Focus() = 0;
  /// Whether the box of an item shows that it is checked, once the item has been brought into view.
  virtual bool ShowsCheck(int tree, const platform::TreePlace& place) = 0;
  virtual bool IsOpen(int tree, size_t parent) = 0;

  /// One of "tab", "enter", "escape", "space" and "down".
  virtual void Press(const std::string& key) = 0;
  /// Into whatever has the keyboard.
  virtual void Type(const std::wstring& text) = 0;
  virtual void Click(int id) = 0;
  /// A row of a list; with the control key one more.
  virtual void ClickRow(int list, int row, bool isOneMore = false) = 0;
  virtual void ClickItem(int tree, const platform::TreePlace& place, bool onBox, int times) = 0;
  /// Pulls the left (-1) or right (1) edge, the top (-1) or bottom (1) edge, or a corner outwards.
  virtual void DragEdge(int across, int down, platform::PixelSize by) = 0;
  virtual void Maximize(bool isMaximized) = 0;
};

/// Shows a dialog over a window of a host while `work` is done on it; a dialog that is left open
/// then is cancelled. What it was closed with.
int AtDesk(platform::DialogHandler& dialog, const std::function<void(Desk&)>& work);

/// Whether the host's thread shows the wait cursor.
bool ShowsWaitCursor();

}  // namespace gantry::test
