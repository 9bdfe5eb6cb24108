#pragma once

#include <optional>
#include <vector>

#include "platform/dialog_window.h"
#include "platform/windows/win32.h"
//
#include <commctrl.h>

namespace gantry::platform {

/// A tree control with check boxes and the items that it shows.
///
/// Some systems look up each handle that they are given among all items, from the first on. So the
/// parents come before all children, each child goes before the one behind it, and only what may
/// have been checked by the user is read back. Parents open when all is in, the first one first:
/// each moves all that is shown below it.
class WinTree {
 public:
  explicit WinTree(HWND control) : control_(control) {}

  /// Before the control goes: it leaves the pictures of its check boxes behind.
  void Release() const;
  void SetItems(std::vector<TreeItem> items, HIMAGELIST pictures);
  /// As the user has left them.
  std::vector<TreeItem> Items() const;
  /// Tells that the user may have toggled an item.
  void Touch(const TreePlace& place);
  void SetChecked(const std::vector<TreePlace>& places, bool isChecked);
  void Expand(bool isExpanded, HIMAGELIST pictures);
  /// The item whose check box is under the cursor.
  std::optional<TreePlace> PlaceUnderCursor() const;
  std::optional<TreePlace> ChosenPlace() const;
  /// Of the number that the control keeps with an item.
  static TreePlace PlaceOfMark(LPARAM mark);

 private:
  using Handles = std::vector<HTREEITEM>;

  HTREEITEM Insert(const TreeItem& item, HTREEITEM parent, HTREEITEM after, LPARAM mark) const;
  void InsertParents();
  void InsertChildren(size_t parent);
  void Choose(UINT which, uintptr_t data) const;
  UINT State(HTREEITEM item) const;
  bool IsChecked(HTREEITEM item) const;
  HTREEITEM HandleOf(const TreePlace& place) const;
  TreePlace PlaceOf(HTREEITEM item) const;
  uintptr_t DataOf(HTREEITEM item) const;
  /// The item, or its parent while that is closed: choosing the item would open it.
  HTREEITEM FindShown(uintptr_t data) const;
  HTREEITEM Next(UINT which) const;

  HWND control_;
  std::vector<TreeItem> items_;
  Handles parents_;
  std::vector<Handles> children_;
  std::vector<TreePlace> touched_;  ///< children alone
};

/// The position of a picture in the list that trees and list views share.
int PictureIndex(int picture);

}  // namespace gantry::platform
