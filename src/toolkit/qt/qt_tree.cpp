#include "toolkit/qt/qt_tree.h"

#include <QScrollBar>
#include <map>

#include "toolkit/qt/qt_picture.h"
#include "toolkit/qt/qt_text.h"
#include "toolkit/tree_items.h"

namespace gantry::platform {

void TreeModel::SetItems(std::vector<TreeItem> items) {
  beginResetModel();
  items_ = std::move(items);
  endResetModel();
}

void TreeModel::SetChecked(const std::vector<TreePlace>& places, bool isChecked) {
  for (const TreePlace& place : places) ItemAt(items_, place).isChecked = isChecked;
}

// A child's index carries its parent's row plus 1, an item of the top level 0.
QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  const auto above = parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : 0;
  return createIndex(row, column, above);
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == 0) return {};
  return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr{0});
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(items_.size());
  if (parent.internalId() != 0) return 0;
  return static_cast<int>(items_[static_cast<size_t>(parent.row())].children.size());
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QModelIndex TreeModel::IndexOf(const TreePlace& place) const {
  const QModelIndex parent = index(static_cast<int>(place.parent), 0, {});
  return place.child ? index(static_cast<int>(*place.child), 0, parent) : parent;
}

TreePlace TreeModel::PlaceOf(const QModelIndex& index) {
  const auto row = static_cast<size_t>(index.row());
  if (index.internalId() == 0) return {row};
  return {static_cast<size_t>(index.internalId() - 1), row};
}

const QIcon& TreeModel::IconOf(int picture) const {
  static std::map<int, QIcon> icons;
  const auto found = icons.find(picture);
  return found != icons.end() ? found->second : icons[picture] = PictureIcon(picture);
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const TreeItem& item = ItemAt(items_, PlaceOf(index));
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(item.text);
    case Qt::DecorationRole:
      return IconOf(item.picture);
    case Qt::CheckStateRole:
      return item.isChecked ? Qt::Checked : Qt::Unchecked;
    default:
      return {};
  }
}

bool TreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole) return false;
  const TreePlace place = PlaceOf(index);
  TreeItem& item = ItemAt(items_, place);
  const bool isChecked = value.toInt() == Qt::Checked;
  if (item.isChecked == isChecked) return true;
  item.isChecked = isChecked;
  if (onCheck) onCheck(place);
  Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
  return true;
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

TreeView::TreeView(QWidget* parent) : QTreeView(parent), model_(new TreeModel(this)) {
  setModel(model_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setIconSize({16, 16});
}

void TreeView::SetItems(std::vector<TreeItem> items) {
  const int scrolled = verticalScrollBar()->value();
  const QModelIndex current = currentIndex();
  const uintptr_t chosen =
      current.isValid() ? ItemAt(model_->Items(), TreeModel::PlaceOf(current)).data : 0;
  KeepBranches(items, model_->Items(),
               [this](size_t parent) { return isExpanded(model_->IndexOf({parent})); });
  model_->SetItems(std::move(items));
  ExpandWhere([](const TreeItem& item) { return item.isExpanded; });
  if (const auto place = FindItem(model_->Items(), chosen)) {
    // The well in place of a variable that is out of sight: choosing that would open it.
    const QModelIndex parent = model_->IndexOf({place->parent});
    setCurrentIndex(isExpanded(parent) ? model_->IndexOf(*place) : parent);
  }
  verticalScrollBar()->setValue(scrolled);
}

void TreeView::ExpandWhere(const std::function<bool(const TreeItem&)>& isWanted) {
  const auto& items = model_->Items();
  // While a layout is due, an expansion is only noted, whatever the length of the tree. The view's
  // own way to expand all notes every child too, at a cost that grows with their square.
  scheduleDelayedItemsLayout();
  for (size_t i = 0; i < items.size(); ++i) {
    if (isWanted(items[i])) expand(model_->IndexOf({i}));
  }
  executeDelayedItemsLayout();
}

void TreeView::ExpandAll() {
  ExpandWhere([](const TreeItem&) { return true; });
}

void TreeView::SetChecked(const std::vector<TreePlace>& places, bool isChecked) {
  model_->SetChecked(places, isChecked);
  viewport()->update();
}

}  // namespace gantry::platform
