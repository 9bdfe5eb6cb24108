#include "toolkit/qt/qt_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetricsF>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QStringListModel>
#include <QTreeWidget>

#include "toolkit/qt/qt_text.h"
#include "toolkit/qt/qt_tree.h"

namespace gantry::platform {

namespace {

QWidget* MakeLabel(const ControlRow& row, QWidget* dialog) {
  QLabel* const label = (row.style & kPathLabel) != 0 ? new PathLabel(dialog) : new QLabel(dialog);
  label->setTextFormat(Qt::PlainText);
  label->setText(ToQt(row.caption));
  label->setAlignment(((row.style & kRightLabel) != 0 ? Qt::AlignRight : Qt::AlignLeft) |
                      Qt::AlignVCenter);
  return label;
}

QWidget* MakeEdit(const ControlRow& row, QWidget* dialog) {
  auto* const edit = new QLineEdit(dialog);
  if ((row.style & kDigitsOnly) != 0) {
    const QRegularExpression digits(QStringLiteral("[0-9]*"));
    edit->setValidator(new QRegularExpressionValidator(digits, edit));
  }
  return edit;
}

QWidget* MakeButton(const ControlRow& row, QWidget* dialog) {
  auto* const button = new QPushButton(ToQt(row.caption), dialog);
  button->setDefault((row.style & kDefaultButton) != 0);
  return button;
}

QWidget* MakeListBox(QWidget* dialog) {
  auto* const list = new QListView(dialog);
  list->setModel(new QStringListModel(list));
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list->setUniformItemSizes(true);
  return list;
}

QWidget* MakeListView(QWidget* dialog) {
  auto* const list = new QTreeWidget(dialog);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list->setIconSize({16, 16});
  list->header()->setStretchLastSection(false);
  return list;
}

QWidget* MakeWidget(const ControlRow& row, QWidget* dialog) {
  switch (row.kind) {
    case ControlKind::kGroup:
      return new QGroupBox(ToQt(row.caption), dialog);
    case ControlKind::kLabel:
      return MakeLabel(row, dialog);
    case ControlKind::kEdit:
      return MakeEdit(row, dialog);
    case ControlKind::kButton:
      return MakeButton(row, dialog);
    case ControlKind::kCheckBox:
      return new QCheckBox(ToQt(row.caption), dialog);
    case ControlKind::kDropList:
      return new QComboBox(dialog);
    case ControlKind::kListBox:
      return MakeListBox(dialog);
    case ControlKind::kListView:
      return MakeListView(dialog);
    case ControlKind::kTree:
      return new TreeView(dialog);
  }
  return new QWidget(dialog);
}

}  // namespace

void PathLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QString shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(rect(), static_cast<int>(alignment()), shown);
}

DialogUnits::DialogUnits(const QWidget& window) {
  const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  const QFontMetricsF metrics(window.font());
  width_ = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
  height_ = metrics.height();
}

QWidget* MakeControl(const ControlRow& row, const DialogUnits& units, QWidget* dialog) {
  QWidget* const control = MakeWidget(row, dialog);
  const DialogPlace& place = row.place;
  control->setGeometry(units.Across(place.left), units.Down(place.top), units.Across(place.width),
                       units.Down(place.height));
  if (row.id != kNoControl) control->setObjectName(QString::number(row.id));
  if (row.toolTip != nullptr) control->setToolTip(ToQt(row.toolTip));
  control->setToolTipDuration(kToolTipMilliseconds);
  return control;
}

}  // namespace gantry::platform
