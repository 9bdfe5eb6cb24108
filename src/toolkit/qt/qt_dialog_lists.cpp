// The drop lists, list boxes, list views and trees of a dialog.

#include <QComboBox>
#include <QItemSelectionModel>
#include <QListView>
#include <QStringListModel>
#include <QTreeWidget>
#include <algorithm>

#include "toolkit/qt/qt_controls.h"
#include "toolkit/qt/qt_dialog.h"
#include "toolkit/qt/qt_picture.h"
#include "toolkit/qt/qt_text.h"
#include "toolkit/qt/qt_tree.h"

namespace gantry::platform {

namespace {

QStringList ToQtList(const std::vector<std::string>& texts) {
  QStringList list;
  list.reserve(static_cast<qsizetype>(texts.size()));
  for (const std::string& text : texts) list << ToQt(text);
  return list;
}

/// A list's view by the id of its control, whatever its kind.
QAbstractItemView* ViewOf(QWidget* control) { return qobject_cast<QAbstractItemView*>(control); }

}  // namespace

void QtDialog::SetItems(int id, const std::vector<std::string>& items) {
  if (auto* list = Find<QComboBox>(id)) {
    const QSignalBlocker quiet(list);
    list->clear();
    list->addItems(ToQtList(items));
    list->setCurrentIndex(-1);
  } else if (auto* box = Find<QListView>(id)) {
    qobject_cast<QStringListModel*>(box->model())->setStringList(ToQtList(items));
  }
}

int QtDialog::Selection(int id) {
  const auto* list = Find<QComboBox>(id);
  return list != nullptr ? list->currentIndex() : -1;
}

void QtDialog::Select(int id, int index) {
  auto* list = Find<QComboBox>(id);
  if (list == nullptr) return;
  const QSignalBlocker quiet(list);
  list->setCurrentIndex(index < list->count() ? index : -1);
}

void QtDialog::SetColumns(int id, const std::vector<ListColumn>& columns) {
  auto* list = Find<QTreeWidget>(id);
  if (list == nullptr) return;
  const DialogUnits units(*this);
  list->setColumnCount(static_cast<int>(columns.size()));
  for (size_t i = 0; i < columns.size(); ++i) {
    list->headerItem()->setText(static_cast<int>(i), ToQt(columns[i].title));
    list->setColumnWidth(static_cast<int>(i), units.AcrossPixels(columns[i].width));
  }
}

void QtDialog::AddRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) {
  auto* list = Find<QTreeWidget>(id);
  if (list == nullptr) return;
  const QIcon icon = PictureIcon(picture);
  QList<QTreeWidgetItem*> items;
  for (const auto& row : rows) {
    auto* item = new QTreeWidgetItem(ToQtList(row));
    item->setIcon(0, icon);
    items << item;
  }
  list->addTopLevelItems(items);
}

void QtDialog::RemoveRows(int id, const std::vector<size_t>& rows) {
  auto* list = Find<QTreeWidget>(id);
  if (list == nullptr) return;
  for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
    delete list->takeTopLevelItem(static_cast<int>(*row));
  }
}

std::vector<size_t> QtDialog::SelectedRows(int id) {
  std::vector<size_t> rows;
  const auto* view = ViewOf(Find<QWidget>(id));
  if (view == nullptr) return rows;
  for (const QItemSelectionRange& range : view->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(static_cast<size_t>(row));
    }
  }
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void QtDialog::SelectAll(int id) {
  if (auto* view = ViewOf(Find<QWidget>(id))) view->selectAll();
}

void QtDialog::InvertSelection(int id) {
  auto* view = ViewOf(Find<QWidget>(id));
  if (view == nullptr || view->model()->rowCount() == 0) return;
  const QAbstractItemModel& model = *view->model();
  const QItemSelection all(model.index(0, 0), model.index(model.rowCount() - 1, 0));
  view->selectionModel()->select(all, QItemSelectionModel::Toggle);
}

void QtDialog::SetTree(int id, std::vector<TreeItem> items) {
  if (auto* tree = Find<TreeView>(id)) tree->SetItems(std::move(items));
}

void QtDialog::SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) {
  if (auto* tree = Find<TreeView>(id)) tree->SetChecked(places, isChecked);
}

void QtDialog::ExpandTree(int id, bool isExpanded) {
  auto* tree = Find<TreeView>(id);
  if (tree == nullptr) return;
  if (isExpanded) {
    tree->ExpandAll();
  } else {
    tree->collapseAll();
  }
}

}  // namespace gantry::platform
