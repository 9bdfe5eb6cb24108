#include "toolkit/win32/win_tree.h"

#include "toolkit/tree_items.h"

namespace gantry::platform {

namespace {

constexpr int kMarkShift = 32;  ///< an item's mark: its parent's position above, its own below

UINT CheckState(bool isChecked) { return INDEXTOSTATEIMAGEMASK(isChecked ? 2U : 1U); }

LPARAM MarkOf(size_t parent, size_t ownPlusOne) {
  return static_cast<LPARAM>(parent << kMarkShift | ownPlusOne);
}

/// Holds back the painting of a control for a while. Hidden as well, since a tree draws its items
/// anew with each that is checked.
class NoRedraw {
 public:
  explicit NoRedraw(HWND control) : control_(control) {
    ::SendMessageA(control_, WM_SETREDRAW, FALSE, 0);
    ::DefWindowProcA(control_, WM_SETREDRAW, FALSE, 0);
  }
  ~NoRedraw() {
    ::DefWindowProcA(control_, WM_SETREDRAW, TRUE, 0);
    ::SendMessageA(control_, WM_SETREDRAW, TRUE, 0);
    ::InvalidateRect(control_, nullptr, TRUE);
  }
  NoRedraw(const NoRedraw&) = delete;
  NoRedraw& operator=(const NoRedraw&) = delete;

 private:
  HWND control_;
};

}  // namespace

int PictureIndex(int picture) { return picture == kWellPicture ? 0 : 1; }

HTREEITEM WinTree::Insert(const TreeItem& item, HTREEITEM parent, HTREEITEM after,
                          LPARAM mark) const {
  TVINSERTSTRUCTA insert = {};
  insert.hParent = parent;
  insert.hInsertAfter = after;
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_STATE;
  insert.item.pszText = const_cast<char*>(item.text.c_str());
  insert.item.iImage = insert.item.iSelectedImage = PictureIndex(item.picture);
  insert.item.lParam = mark;
  insert.item.state = CheckState(item.isChecked);
  insert.item.stateMask = TVIS_STATEIMAGEMASK;
  return reinterpret_cast<HTREEITEM>(
      ::SendMessageA(control_, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
}

void WinTree::Release() const {
  const LRESULT boxes = ::SendMessageA(control_, TVM_SETIMAGELIST, TVSIL_STATE, 0);
  ::ImageList_Destroy(reinterpret_cast<HIMAGELIST>(boxes));
}

void WinTree::SetItems(std::vector<TreeItem> items, HIMAGELIST pictures) {
  KeepBranches(items, items_, [this](size_t parent) { return IsOpen(parents_[parent]); });
  Fill(std::move(items), pictures);
}

void WinTree::Fill(std::vector<TreeItem> items, HIMAGELIST pictures) {
  const uintptr_t first = DataOf(Next(TVGN_FIRSTVISIBLE));
  const uintptr_t chosen = DataOf(Next(TVGN_CARET));
  const NoRedraw held(control_);
  ::SendMessageA(control_, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(pictures));
  ::SendMessageA(control_, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
  items_ = std::move(items);
  InsertParents();
  for (size_t i = 0; i < items_.size(); ++i) InsertChildren(i);
  for (size_t i = 0; i < items_.size(); ++i) {
    if (items_[i].isExpanded) Branch(parents_[i]);
  }
  Choose(TVGN_CARET, chosen);
  Choose(TVGN_FIRSTVISIBLE, first);
}

void WinTree::Choose(UINT which, uintptr_t data) const {
  if (const HTREEITEM item = FindShown(data)) {
    ::SendMessageA(control_, TVM_SELECTITEM, which, reinterpret_cast<LPARAM>(item));
  }
}

void WinTree::InsertParents() {
  parents_.clear();
  HTREEITEM last = TVI_FIRST;
  for (size_t i = 0; i < items_.size(); ++i) {
    last = Insert(items_[i], TVI_ROOT, last, MarkOf(i, 0));
    parents_.push_back(last);
  }
  children_.assign(items_.size(), {});
}

void WinTree::InsertChildren(size_t parent) {
  const std::vector<TreeItem>& items = items_[parent].children;
  children_[parent].resize(items.size());
  for (size_t i = items.size(); i-- > 0;) {
    children_[parent][i] = Insert(items[i], parents_[parent], TVI_FIRST, MarkOf(parent, i + 1));
  }
}

LRESULT WinTree::StateOf(HTREEITEM item, LPARAM bits) const {
  return bits & ::SendMessageA(control_, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), bits);
}

void WinTree::Branch(HTREEITEM parent) const {
  ::SendMessageA(control_, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(parent));
}

// Filled anew: opening or closing one item after the other lays out the tree each time, which takes
// some systems more than ten times as long.
void WinTree::Expand(bool isExpanded, HIMAGELIST pictures) {
  std::vector<TreeItem> items = items_;
  for (TreeItem& item : items) item.isExpanded = isExpanded;
  Fill(std::move(items), pictures);
}

bool WinTree::IsBoxChecked(HTREEITEM item) const {
  return StateOf(item, TVIS_STATEIMAGEMASK) == LPARAM{CheckState(true)};
}

void WinTree::SetBox(HTREEITEM box, bool isChecked) {
  TVITEMA item = {};
  item.mask = TVIF_STATE;
  item.hItem = box;
  item.state = CheckState(isChecked);
  item.stateMask = TVIS_STATEIMAGEMASK;
  isSettingBox_ = true;
  ::SendMessageA(control_, TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
  isSettingBox_ = false;
}

void WinTree::SetChecked(const std::vector<TreePlace>& places, bool isChecked) {
  for (const TreePlace& place : places) ItemAt(items_, place).isChecked = isChecked;
  ::InvalidateRect(control_, nullptr, FALSE);
  ::UpdateWindow(control_);
}

void WinTree::Toggle(const TreePlace& place) {
  TreeItem& item = ItemAt(items_, place);
  // The control toggles what its box shows.
  if (IsBoxChecked(HandleOf(place)) != item.isChecked) SetBox(HandleOf(place), item.isChecked);
  item.isChecked = !item.isChecked;
}

std::optional<TreePlace> WinTree::TakeChange(const NMTVITEMCHANGE& change) {
  const UINT boxes = TVIS_STATEIMAGEMASK;
  if (isSettingBox_ || ((change.uStateNew ^ change.uStateOld) & boxes) == 0) return std::nullopt;
  const TreePlace place = PlaceOfMark(change.lParam);
  TreeItem& item = ItemAt(items_, place);
  const bool isChecked = (change.uStateNew & boxes) == CheckState(true);
  if (item.isChecked == isChecked) return std::nullopt;
  item.isChecked = isChecked;
  return place;
}

LRESULT WinTree::OnPaint(const NMTVCUSTOMDRAW& draw) {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
  const TreePlace place = PlaceOfMark(draw.nmcd.lItemlParam);
  if (place.parent >= items_.size()) return CDRF_DODEFAULT;
  const auto handle = reinterpret_cast<HTREEITEM>(draw.nmcd.dwItemSpec);
  const bool isChecked = ItemAt(items_, place).isChecked;
  if (IsBoxChecked(handle) != isChecked) SetBox(handle, isChecked);
  return CDRF_DODEFAULT;
}

HTREEITEM WinTree::HandleOf(const TreePlace& place) const {
  return place.child ? children_[place.parent][*place.child] : parents_[place.parent];
}

TreePlace WinTree::PlaceOf(HTREEITEM item) const {
  TVITEMA asked = {};
  asked.mask = TVIF_PARAM;
  asked.hItem = item;
  ::SendMessageA(control_, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&asked));
  return PlaceOfMark(asked.lParam);
}

TreePlace WinTree::PlaceOfMark(LPARAM mark) {
  const auto positions = static_cast<uint64_t>(mark);
  TreePlace place{positions >> kMarkShift};
  if (const size_t ownPlusOne = positions & UINT32_MAX) place.child = ownPlusOne - 1;
  return place;
}

uintptr_t WinTree::DataOf(HTREEITEM item) const {
  return item != nullptr ? ItemAt(items_, PlaceOf(item)).data : 0;
}

HTREEITEM WinTree::FindShown(uintptr_t data) const {
  const auto place = FindItem(items_, data);
  if (!place) return nullptr;
  const HTREEITEM parent = parents_[place->parent];
  return IsOpen(parent) ? HandleOf(*place) : parent;
}

HTREEITEM WinTree::Next(UINT which) const {
  return reinterpret_cast<HTREEITEM>(::SendMessageA(control_, TVM_GETNEXTITEM, which, 0));
}

std::optional<TreePlace> WinTree::PlaceUnderCursor() const {
  const DWORD position = ::GetMessagePos();
  TVHITTESTINFO hit = {};
  hit.pt.x = static_cast<short>(LOWORD(position));
  hit.pt.y = static_cast<short>(HIWORD(position));
  ::MapWindowPoints(nullptr, control_, &hit.pt, 1);
  ::SendMessageA(control_, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  if (hit.hItem == nullptr || (hit.flags & TVHT_ONITEMSTATEICON) == 0) return std::nullopt;
  return PlaceOf(hit.hItem);
}

std::optional<TreePlace> WinTree::ChosenPlace() const {
  const HTREEITEM chosen = Next(TVGN_CARET);
  return chosen != nullptr ? std::optional(PlaceOf(chosen)) : std::nullopt;
}

}  // namespace gantry::platform
