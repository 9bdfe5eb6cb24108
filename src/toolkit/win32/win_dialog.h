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

  void Close(int result) override;
  void* Handle() override { return window_; }
  PixelSize ClientSize() override;
  void Redraw() override;
  void Enable(int id, bool isEnabled) override;
  void SetToolTip(int id, const std::string& text) override;
  PixelRect Rect(int id) override;
  void Move(int id, const PixelRect& rect) override;
  void Focus(int id) override;
  std::string Text(int id) override;
  void SetText(int id, const std::string& text) override;
  void PutCaretBehindText(int id) override;
  bool IsChecked(int id) override;
  void SetChecked(int id, bool isChecked) override;
  void SetItems(int id, const std::vector<std::string>& items) override;
  int Selection(int id) override;
  void Select(int id, int index) override;
  void SetColumns(int id, const std::vector<ListColumn>& columns) override;
  void AddRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) override;
  void RemoveRows(int id, const std::vector<size_t>& rows) override;
  std::vector<size_t> SelectedRows(int id) override;
  void SelectAll(int id) override;
  void InvertSelection(int id) override;
  void SetTree(int id, std::vector<TreeItem> items) override;
  void SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) override;
  void ExpandTree(int id, bool isExpanded) override;
  void ShowMessage(const std::string& text) override;
  std::optional<std::string> AskForFile(const FileRequest& request) override;
  int RunDialog(DialogHandler& handler) override;
  bool ShowHelp(const std::string& file, uint32_t topic) override;
  void SetWaitCursor(bool isWaiting) override;
  void Pause(int milliseconds) override;

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
  const ControlRow* Row(int id) const;
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageA(Item(id), message, wParam, lParam);
  }
  void Deselect(int id, size_t first, size_t last);
  void FitScrollBar(int id, const std::vector<std::string>& items) const;
  WinTree* FindTree(int id);

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
