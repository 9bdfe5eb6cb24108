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

  int RunDialog(DialogHandler& handler) override;
#define CALL(Result, Name, Parameters, Arguments) Result Name Parameters override;
#include "toolkit/window_calls.inc"

  void reject() override;  ///< Escape, and the window's own close button

 protected:
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  template <class Widget = QWidget>
  Widget& At(int id) const {
    return dynamic_cast<Widget&>(*controls_.at(id));
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
