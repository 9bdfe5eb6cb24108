#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <QTreeView>
#include <functional>
#include <vector>

#include "toolkit/dialog_window.h"

namespace gantry::platform {

/// The two levels of a tree's items. The branches are the view's.
class TreeModel : public QAbstractItemModel {
 public:
  using QAbstractItemModel::QAbstractItemModel;

  void SetItems(std::vector<TreeItem> items);
  const std::vector<TreeItem>& Items() const { return items_; }
  void SetChecked(const std::vector<TreePlace>& places, bool isChecked);
  QModelIndex IndexOf(const TreePlace& place) const;
  static TreePlace PlaceOf(const QModelIndex& index);
  /// Called when the user toggles a check box.
  std::function<void(const TreePlace&)> onCheck;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const QIcon& IconOf(int picture) const;

  std::vector<TreeItem> items_;
};

/// A tree with check boxes that stays fluid with hundreds of thousands of items.
class TreeView : public QTreeView {
 public:
  explicit TreeView(QWidget* parent);

  TreeModel& Model() { return *model_; }
  /// Keeps the user's place in the tree, and the branches of what stays.
  void SetItems(std::vector<TreeItem> items);
  void SetChecked(const std::vector<TreePlace>& places, bool isChecked);
  void ExpandAll();

 private:
  void ExpandWhere(const std::function<bool(const TreeItem&)>& isWanted);

  TreeModel* model_;
};

}  // namespace gantry::platform
