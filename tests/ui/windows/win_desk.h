#pragma once

#include <initializer_list>
#include <thread>

#include "platform/windows/win32.h"
#include "ui/desk.h"
//
#include <commctrl.h>

namespace gantry::test {

/// A host that shows one dialog over its window, on a thread of its own; the person before it is on
/// the thread of the test.
///
/// Keys and mouse go in by `SendInput`, at the place where the system takes over from their
/// drivers. The host has dealt with them when a timer's message has come, which comes only when no
/// input is left to fetch. Clicks have times of their own, so that two of them are a double click
/// only where one is meant.
class WinDesk : public Desk {
 public:
  /// Returns when the dialog is seen.
  explicit WinDesk(platform::DialogHandler& dialog);
  /// Gives up what is still there.
  ~WinDesk() override;
  WinDesk(const WinDesk&) = delete;
  WinDesk& operator=(const WinDesk&) = delete;

  /// Waits for the end of the dialog; what its run returned.
  int Result();
  bool IsDialogOpen() const { return ::IsWindow(dialog_) != 0; }
  HWND Host() const { return host_; }
  /// The window that has the keyboard, the dialog or what has come up over it.
  HWND Front() const { return ThreadInfo().hwndActive; }
  HWND At(int id) const { return ::GetDlgItem(Front(), id); }
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(At(id), message, wParam, lParam);
  }
  void GiveUpDialogs();
  void TypeWide(const std::wstring& text);

  void InHost(const std::function<void()>& action) override;
  std::string Title() override;
  std::string Message() override;
  int Focus() override { return ::GetDlgCtrlID(ThreadInfo().hwndFocus); }
  bool ShowsCheck(int tree, const platform::TreePlace& place) override;
  bool IsOpen(int tree, size_t parent) override;
  void Press(Key key) override;
  void Type(const std::string& text) override { TypeWide({text.begin(), text.end()}); }
  void Click(int id) override;
  void ClickRow(int list, int row, bool isOneMore = false) override;
  void ClickItem(int tree, const platform::TreePlace& place) override;
  void ClickBox(int tree, const platform::TreePlace& place, int times = 1) override;
  void DragEdge(int across, int down, platform::PixelSize by) override;
  void Maximize(bool isMaximized) override;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void BeHost(platform::DialogHandler& dialog);
  void MakeWindows();
  GUITHREADINFO ThreadInfo() const;
  HTREEITEM Item(int tree, const platform::TreePlace& place) const;
  UINT StateOf(int tree, HTREEITEM item) const;
  void ClickTree(int tree, const platform::TreePlace& place, int right, int times);
  void Click(HWND control, POINT at, int times = 1, bool isOneMore = false);
  /// Waits until all that was done so far has been dealt with.
  void Settle() const;
  /// Waits for what time alone brings.
  void Until(const std::function<bool()>& holds) const;

  HANDLE made_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE settled_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE ended_ = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
  HWND host_ = nullptr;
  HWND errands_ = nullptr;  ///< takes what is asked of the host's thread
  HWND dialog_ = nullptr;
  int result_ = 0;
  std::thread thread_;
};

std::string WindowText(HWND window);

/// A window to show dialogs over.
HWND MakeWindow(int width, int height);

}  // namespace gantry::test
