#pragma once

#include <optional>
#include <vector>

#include "platform/windows/win32.h"
#include "toolkit/dialog_window.h"
//
#include <commctrl.h>

namespace gantry::platform {

/// A tree control with check boxes, and the items that it shows. Which of them are checked is kept
/// here; the control's own boxes follow as they are painted, or when the user gets at them.
///
/// Some systems look up each handle that they are given among all items, from the first on. So the
/// parents come before all children, each child goes before the one behind it, and no item is
/// touched that needn't be. Parents open when all is in, the first one first: each moves all that
/// is shown below it.
class WinTree {
 public:
  explicit WinTree(HWND control) : control_(control) {}

  /// Before the control goes: it leaves the pictures of its check boxes behind.
  void Release() const;
  /// What stays keeps its branches as the user has left them.
  void SetItems(std::vector<TreeItem> items, HIMAGELIST pictures);
  void SetChecked(const std::vector<TreePlace>& places, bool isChecked);
  void Expand(bool isExpanded, HIMAGELIST pictures);

  // What the control tells.

  /// The user toggles an item, and the control is about to do so to its box.
  void Toggle(const TreePlace& place);
  /// The item whose box was changed by another than the user or this; none for any other change.
  std::optional<TreePlace> TakeChange(const NMTVITEMCHANGE& change);
  /// Brings the box of an item that is being painted up to date; the answer to the control.
  LRESULT OnPaint(const NMTVCUSTOMDRAW& draw);
  /// The item whose check box is under the cursor.
  std::optional<TreePlace> PlaceUnderCursor() const;
  std::optional<TreePlace> ChosenPlace() const;

 private:
  using Handles = std::vector<HTREEITEM>;

  HTREEITEM Insert(const TreeItem& item, HTREEITEM parent, HTREEITEM after, LPARAM mark) const;
  void InsertParents();
  void InsertChildren(size_t parent);
  void Choose(UINT which, uintptr_t data) const;
  LRESULT StateOf(HTREEITEM item, LPARAM bits) const;
  bool IsOpen(HTREEITEM item) const { return StateOf(item, TVIS_EXPANDED) != 0; }
  void Branch(HTREEITEM parent) const;
  void Fill(std::vector<TreeItem> items, HIMAGELIST pictures);
  bool IsBoxChecked(HTREEITEM item) const;
  void SetBox(HTREEITEM item, bool isChecked);
  HTREEITEM HandleOf(const TreePlace& place) const;
  TreePlace PlaceOf(HTREEITEM item) const;
  /// Of the number that the control keeps with an item.
  static TreePlace PlaceOfMark(LPARAM mark);
  uintptr_t DataOf(HTREEITEM item) const;
  /// The item, or its parent while that is closed: choosing the item would open it.
  HTREEITEM FindShown(uintptr_t data) const;
  HTREEITEM Next(UINT which) const;

  HWND control_;
  std::vector<TreeItem> items_;
  Handles parents_;
  std::vector<Handles> children_;
  bool isSettingBox_ = false;
};

/// The position of a picture in the list that trees and list views share.
int PictureIndex(int picture);

}  // namespace gantry::platform
