#pragma once

#include <QDialog>
#include <map>

#include "toolkit/dialog_window.h"

namespace gantry::platform {

class TreeView;

/// A dialog of this toolkit: controls in their places, events on to the handler.
class QtDialog : public QDialog, public DialogWindow {
 public:
  QtDialog(DialogHandler& handler, QWidget* parent);

  void Close(int result) override;
  void* Handle() override;
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

  void reject() override;  ///< Escape, and the window's own close button

 protected:
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The control, null when there is none of that id or it is another kind.
  template <class Widget>
  Widget* Find(int id) const {
    const auto found = controls_.find(id);
    return found == controls_.end() ? nullptr : dynamic_cast<Widget*>(found->second);
  }
  void MakeControls();
  void Connect(int id, QWidget* control);
  void FitToTemplate();
  /// Whether the user has dragged an edge to make this size, rather than maximised the window or
  /// put it back.
  bool IsDrag(const QResizeEvent& event);

  DialogHandler& handler_;
  std::map<int, QWidget*> controls_;
  QRect lastGeometry_;
  QSize filledSize_;  ///< while the window fills the screen
  bool isOpen_ = false;
};

}  // namespace gantry::platform
