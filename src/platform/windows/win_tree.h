#pragma once

#include <optional>
#include <vector>

#include "platform/dialog_window.h"
#include "platform/windows/win32.h"
//
#include <commctrl.h>

namespace gantry::platform {

/// A tree control with check boxes and the items that it shows. Filling it costs the same for each
/// item, since items come in the order in which they are shown, each behind the one before.
class WinTree {
 public:
  explicit WinTree(HWND control) : control_(control) {}

  HWND Control() const { return control_; }
  void SetItems(std::vector<TreeItem> items, HIMAGELIST pictures);
  /// As the user has left them.
  std::vector<TreeItem> Items() const;
  void SetChecked(const std::vector<TreePlace>& places, bool isChecked);
  void Expand(bool isExpanded, HIMAGELIST pictures);
  /// The item whose check box is under the cursor.
  std::optional<TreePlace> PlaceUnderCursor() const;
  std::optional<TreePlace> ChosenPlace() const;

 private:
  using Handles = std::vector<HTREEITEM>;

  HTREEITEM Insert(const TreeItem& item, HTREEITEM parent, HTREEITEM after, LPARAM mark) const;
  UINT State(HTREEITEM item) const;
  HTREEITEM HandleOf(const TreePlace& place) const;
  TreePlace PlaceOf(HTREEITEM item) const;
  uintptr_t DataOf(HTREEITEM item) const;
  HTREEITEM Find(uintptr_t data) const;
  HTREEITEM Next(UINT which) const;

  HWND control_;
  std::vector<TreeItem> items_;
  Handles parents_;
  std::vector<Handles> children_;
};

/// The position of a picture in the list that trees and list views share.
int PictureIndex(int picture);

}  // namespace gantry::platform
