// The drop lists, list boxes, list views and trees of a dialog.

#include <QComboBox>
#include <QItemSelectionModel>
#include <QListView>
#include <QStringListModel>
#include <QTreeWidget>
#include <algorithm>
#include <ranges>

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

}  // namespace

void QtDialog::SetItems(int id, const std::vector<std::string>& items) {
  if (auto* box = dynamic_cast<QListView*>(&At(id))) {
    qobject_cast<QStringListModel*>(box->model())->setStringList(ToQtList(items));
    return;
  }
  auto& list = At<QComboBox>(id);
  const QSignalBlocker quiet(list);
  list.clear();
  list.addItems(ToQtList(items));
  list.setCurrentIndex(-1);
}

int QtDialog::Selection(int id) { return At<QComboBox>(id).currentIndex(); }

void QtDialog::Select(int id, int index) {
  auto& list = At<QComboBox>(id);
  const QSignalBlocker quiet(list);
  list.setCurrentIndex(index < list.count() ? index : -1);
}

void QtDialog::SetColumns(int id, const std::vector<ListColumn>& columns) {
  auto& list = At<QTreeWidget>(id);
  const DialogUnits units(*this);
  list.setColumnCount(static_cast<int>(columns.size()));
  for (int i = 0; i < list.columnCount(); ++i) {
    const auto& [title, width] = columns[static_cast<size_t>(i)];
    list.headerItem()->setText(i, ToQt(title));
    list.setColumnWidth(i, units.AcrossPixels(width));
  }
}

void QtDialog::AddRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) {
  const QIcon icon = PictureIcon(picture);
  QList<QTreeWidgetItem*> items;
  for (const auto& row : rows) {
    items << new QTreeWidgetItem(ToQtList(row));
    items.back()->setIcon(0, icon);
  }
  At<QTreeWidget>(id).addTopLevelItems(items);
}

void QtDialog::RemoveRows(int id, const std::vector<size_t>& rows) {
  for (const size_t row : rows | std::views::reverse) {
    delete At<QTreeWidget>(id).takeTopLevelItem(static_cast<int>(row));
  }
}

std::vector<size_t> QtDialog::SelectedRows(int id) {
  std::vector<size_t> rows;
  const auto& selection = At<QAbstractItemView>(id).selectionModel()->selection();
  for (const QItemSelectionRange& range : selection) {
    for (int row = range.top(); row <= range.bottom(); ++row) {
      rows.push_back(static_cast<size_t>(row));
    }
  }
  std::ranges::sort(rows);
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void QtDialog::SelectAll(int id) { At<QAbstractItemView>(id).selectAll(); }

void QtDialog::InvertSelection(int id) {
  auto& view = At<QAbstractItemView>(id);
  const QAbstractItemModel& model = *view.model();
  const QItemSelection all(model.index(0, 0), model.index(model.rowCount() - 1, 0));
  view.selectionModel()->select(all, QItemSelectionModel::Toggle);
}

void QtDialog::SetTree(int id, std::vector<TreeItem> items) {
  At<TreeView>(id).SetItems(std::move(items));
}

void QtDialog::SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) {
  At<TreeView>(id).SetChecked(places, isChecked);
}

void QtDialog::ExpandTree(int id, bool isExpanded) {
  auto& tree = At<TreeView>(id);
  isExpanded ? tree.ExpandAll() : tree.collapseAll();
}

}  // namespace gantry::platform
