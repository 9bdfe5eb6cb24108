#pragma once

#include <map>
#include <memory>

#include "platform/windows/win32.h"
#include "toolkit/dialog_window.h"
#include "toolkit/win32/win_tree.h"

namespace gantry::platform {

/// A dialog of the system: made from a template in memory, events on to the handler.
class WinDialog : public DialogWindow {
 public:
  explicit WinDialog(DialogHandler& handler) : handler_(handler) {}
  ~WinDialog() override;
  WinDialog(const WinDialog&) = delete;
  WinDialog& operator=(const WinDialog&) = delete;

  /// Shows it until it is closed; what it was closed with.
  int Run(HWND parent);

  int RunDialog(DialogHandler& handler) override;
#define CALL(Result, Name, Parameters, Arguments) Result Name Parameters override;
#include "toolkit/window_calls.inc"

 private:
  static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  INT_PTR OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
  void Open();
  void SetIcons();
  void PrepareControls();
  void MakePictures();
  void MakeToolTips();
  void OnCommand(int id, int code);
  LRESULT OnNotify(const NMHDR& notice);
  void OnTreeNotice(int id, WinTree& tree, const NMHDR& notice);
  void OnSize(WPARAM kind);
  void OnDestroy();

  HWND Item(int id) const { return ::GetDlgItem(window_, id); }
  /// Null where there is none of that id.
  const ControlRow* Row(int id) const;
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(Item(id), message, wParam, lParam);
  }
  void Deselect(int id, size_t first, size_t last);
  void FitScrollBar(int id, const std::vector<std::string>& items) const;

  DialogHandler& handler_;
  HWND window_ = nullptr;
  HWND toolTips_ = nullptr;
  HICON icons_[2] = {};
  HIMAGELIST pictures_ = nullptr;
  std::map<int, WinTree> trees_;
  SIZE leastSize_ = {};
  bool isOpen_ = false;
  bool isClosed_ = false;
};

}  // namespace gantry::platform
