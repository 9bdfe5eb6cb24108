#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <thread>

#include "platform/dialog_window.h"
#include "platform/windows/win32.h"

namespace gantry::test {

/// A host that shows one dialog over its window, on a thread of its own; and the person before it.
///
/// Keys and mouse go in by `SendInput`, at the place where the system takes over from their
/// drivers. What is done returns when the host's thread has dealt with all of it: a timer's message
/// comes only when no input is left to fetch. Ids are those of the window in front. Clicks have
/// times of their own, so that two of them are a double click only where one is meant.
class Desk {
 public:
  /// Returns when the dialog is seen.
  explicit Desk(platform::DialogHandler& dialog);
  /// Presses Escape where the dialog is still there.
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  /// Waits for the end of the dialog; what its run returned.
  int Result();
  bool IsOpen() const { return ::IsWindow(dialog_) != 0; }
  HWND Host() const { return host_; }
  /// The window that has the keyboard, the dialog or what has come up over it.
  HWND Front() const;
  HWND Focus() const;
  HWND At(int id) const { return ::GetDlgItem(Front(), id); }
  std::string Text(int id) const;
  bool IsEnabled(int id) const { return ::IsWindowEnabled(At(id)) != 0; }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(At(id), message, wParam, lParam);
  }
  /// In pixels of the dialog's client area.
  RECT Place(int id) const;

  /// One key, with others held down.
  void Press(WORD key, std::initializer_list<WORD> held = {});
  /// Into whatever has the keyboard.
  void Type(const std::string& text);
  /// In the place of what an edit held.
  void Type(int id, const std::string& text);
  void Click(int id);
  void Click(HWND control, POINT at, int times = 1, std::initializer_list<WORD> held = {});
  /// Puts the mouse over a control, where it isn't there.
  void Hover(int id) const;
  /// Pulls the left (-1) or right (1) edge, the top (-1) or bottom (1) edge, or a corner outwards.
  void DragEdge(int across, int down, SIZE by);
  /// Runs on the host's thread, within the dialog's loop.
  void InHost(const std::function<void()>& action) const;
  /// Waits until all that was done so far has been dealt with.
  void Settle() const;
  /// Waits for what time alone brings.
  void Until(const std::function<bool()>& holds) const;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void BeHost(platform::DialogHandler& dialog);
  void MakeWindows();

  HANDLE made_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE settled_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE ended_ = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
  HWND host_ = nullptr;
  HWND errands_ = nullptr;  ///< takes what is asked of the host's thread
  HWND dialog_ = nullptr;
  int result_ = 0;
  std::thread thread_;
};

/// A window to show dialogs over.
HWND MakeWindow(int width, int height);

/// Pixels at 96 dots to the inch as pixels of this display.
int Scaled(int pixels);

}  // namespace gantry::test
