#include "toolkit/qt/qt_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QWindow>

#include "toolkit/qt/qt_controls.h"
#include "toolkit/qt/qt_picture.h"
#include "toolkit/qt/qt_text.h"
#include "toolkit/qt/qt_tree.h"

namespace gantry::platform {

namespace {

constexpr const char* kText = "text";  ///< the property of edits, labels and buttons

/// The edge that was dragged to make one rectangle of another, by the number that Windows has for
/// it: 1 and 2 for left and right, and 3 or 6 more for top or bottom. Every change of size is one
/// of an edge, the near one only where the far one stayed. 0 when no size changed.
int DraggedEdge(const QRect& from, const QRect& to) {
  int edge = 0;
  if (from.width() != to.width()) edge += from.right() == to.right() ? 1 : 2;
  if (from.height() != to.height()) edge += from.bottom() == to.bottom() ? 3 : 6;
  return edge;
}

}  // namespace

QtDialog::QtDialog(DialogHandler& handler, QWidget* parent) : QDialog(parent), handler_(handler) {
  setWindowTitle(ToQt(handler.Template().caption));
  setWindowIcon(PictureIcon(kSimulatorPicture));
  setWindowModality(Qt::ApplicationModal);
  MakeControls();
  FitToTemplate();
  handler_.OnOpen(*this);
  handler_.OnSize(*this, ClientSize());
  isOpen_ = true;
}

void QtDialog::MakeControls() {
  const DialogUnits units(*this);
  QWidget* last = nullptr;
  for (const ControlRow& row : handler_.Template().controls) {
    QWidget* const control = MakeControl(row, units, this);
    if (row.id != kNoControl) {
      controls_[row.id] = control;
      Connect(row.id, control);
    }
    if (control->focusPolicy() == Qt::NoFocus) continue;
    if (last != nullptr) setTabOrder(last, control);
    if (last == nullptr) control->setFocus();
    last = control;
  }
}

void QtDialog::Connect(int id, QWidget* control) {
  if (auto* button = qobject_cast<QAbstractButton*>(control)) {
    connect(button, &QAbstractButton::clicked, this, [this, id] { handler_.OnButton(*this, id); });
  } else if (auto* list = qobject_cast<QComboBox*>(control)) {
    // Told only of a change, and only of the user's.
    connect(list, &QComboBox::currentIndexChanged, this, [this, id] {
      if (isOpen_) handler_.OnSelection(*this, id);
    });
  } else if (auto* tree = dynamic_cast<TreeView*>(control)) {
    tree->Model().onCheck = [this, id](const TreePlace& place) {
      handler_.OnTreeCheck(*this, id, place);
    };
  }
}

void QtDialog::FitToTemplate() {
  const DialogUnits units(*this);
  const DialogTemplate& shape = handler_.Template();
  const QSize size(units.Across(shape.width), units.Down(shape.height));
  resize(size);
  if (shape.isResizable) {
    setMinimumSize(size);
    setSizeGripEnabled(true);
  } else {
    setFixedSize(size);
  }
}

void QtDialog::reject() { handler_.OnButton(*this, kCancelButton); }

void QtDialog::moveEvent(QMoveEvent* event) {
  QDialog::moveEvent(event);
  if (windowHandle() == nullptr) return;
  // The window's own geometry is ahead of the events: where it has another size too, that event is
  // still to come and needs the old place.
  const QRect geometry = windowHandle()->geometry();
  if (geometry.size() == size()) lastGeometry_ = geometry;
}

bool QtDialog::IsDrag(const QResizeEvent& event) {
  // The display tells of a size and of being maximised in either order.
  const bool isPutBack = filledSize_.isValid() && event.oldSize() == filledSize_;
  const bool isFilled = !isPutBack && (isMaximized() || isFullScreen());
  filledSize_ = isFilled ? event.size() : QSize();
  return !isFilled && !isPutBack;
}

void QtDialog::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (!isOpen_ || windowHandle() == nullptr) return;
  const QRect geometry(windowHandle()->geometry().topLeft(), event->size());
  const bool isDrag = !lastGeometry_.isNull() && IsDrag(*event);
  const int edge = isDrag ? DraggedEdge(lastGeometry_, geometry) : 0;
  if (edge != 0) handler_.OnSizing(*this, edge);
  lastGeometry_ = geometry;
  handler_.OnSize(*this, ClientSize());
}

void QtDialog::Close(int result) { done(result); }

void* QtDialog::Handle() { return reinterpret_cast<void*>(winId()); }

PixelSize QtDialog::ClientSize() { return {width(), height()}; }

void QtDialog::Redraw() { repaint(); }

void QtDialog::Enable(int id, bool isEnabled) { At(id).setEnabled(isEnabled); }

void QtDialog::SetToolTip(int id, const std::string& text) { At(id).setToolTip(ToQt(text)); }

PixelRect QtDialog::Rect(int id) {
  const QRect place = At(id).geometry();
  return {place.x(), place.y(), place.x() + place.width(), place.y() + place.height()};
}

void QtDialog::Move(int id, const PixelRect& rect) {
  At(id).setGeometry(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
}

void QtDialog::Focus(int id) { At(id).setFocus(); }

std::string QtDialog::Text(int id) { return FromQt(At(id).property(kText).toString()); }

void QtDialog::SetText(int id, const std::string& text) { At(id).setProperty(kText, ToQt(text)); }

void QtDialog::PutCaretBehindText(int id) { At<QLineEdit>(id).end(false); }

bool QtDialog::IsChecked(int id) { return At<QCheckBox>(id).isChecked(); }

void QtDialog::SetChecked(int id, bool isChecked) { At<QCheckBox>(id).setChecked(isChecked); }

}  // namespace gantry::platform
