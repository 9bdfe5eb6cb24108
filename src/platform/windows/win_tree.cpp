#include "platform/windows/win_tree.h"

#include <algorithm>

namespace gantry::platform {

namespace {

constexpr int kMarkShift = 32;  ///< an item's mark: its parent's position above, its own below

UINT CheckState(bool isChecked) { return INDEXTOSTATEIMAGEMASK(isChecked ? 2U : 1U); }

LPARAM MarkOf(size_t parent, size_t ownPlusOne) {
  return static_cast<LPARAM>(parent << kMarkShift | ownPlusOne);
}

/// Holds back the painting of a control for a while.
class NoRedraw {
 public:
  explicit NoRedraw(HWND control) : control_(control) {
    ::SendMessageA(control_, WM_SETREDRAW, FALSE, 0);
  }
  ~NoRedraw() {
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
  insert.item.state = CheckState(item.isChecked) | (item.isExpanded ? TVIS_EXPANDED : 0U);
  insert.item.stateMask = TVIS_STATEIMAGEMASK | TVIS_EXPANDED;
  return reinterpret_cast<HTREEITEM>(
      ::SendMessageA(control_, TVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&insert)));
}

void WinTree::SetItems(std::vector<TreeItem> items, HIMAGELIST pictures) {
  const uintptr_t first = DataOf(Next(TVGN_FIRSTVISIBLE));
  const uintptr_t chosen = DataOf(Next(TVGN_CARET));
  const NoRedraw held(control_);
  ::SendMessageA(control_, TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(pictures));
  ::SendMessageA(control_, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
  items_ = std::move(items);
  parents_.clear();
  children_.assign(items_.size(), {});
  HTREEITEM last = TVI_FIRST;
  for (size_t i = 0; i < items_.size(); ++i) {
    last = Insert(items_[i], TVI_ROOT, last, MarkOf(i, 0));
    parents_.push_back(last);
    HTREEITEM lastChild = TVI_FIRST;
    for (const TreeItem& child : items_[i].children) {
      lastChild = Insert(child, last, lastChild, MarkOf(i, children_[i].size() + 1));
      children_[i].push_back(lastChild);
    }
  }
  const auto select = [&](UINT which, uintptr_t data) {
    if (const HTREEITEM item = Find(data)) {
      ::SendMessageA(control_, TVM_SELECTITEM, which, reinterpret_cast<LPARAM>(item));
    }
  };
  select(TVGN_CARET, chosen);
  select(TVGN_FIRSTVISIBLE, first);
}

UINT WinTree::State(HTREEITEM item) const {
  return static_cast<UINT>(::SendMessageA(control_, TVM_GETITEMSTATE,
                                          reinterpret_cast<WPARAM>(item),
                                          TVIS_STATEIMAGEMASK | TVIS_EXPANDED));
}

std::vector<TreeItem> WinTree::Items() const {
  std::vector<TreeItem> items = items_;
  const auto isChecked = [](UINT state) {
    return (state & TVIS_STATEIMAGEMASK) == CheckState(true);
  };
  for (size_t i = 0; i < items.size(); ++i) {
    const UINT state = State(parents_[i]);
    items[i].isChecked = isChecked(state);
    items[i].isExpanded = (state & TVIS_EXPANDED) != 0;
    for (size_t j = 0; j < items[i].children.size(); ++j) {
      items[i].children[j].isChecked = isChecked(State(children_[i][j]));
    }
  }
  return items;
}

void WinTree::SetChecked(const std::vector<TreePlace>& places, bool isChecked) {
  const NoRedraw held(control_);
  for (const TreePlace& place : places) {
    TVITEMA item = {};
    item.mask = TVIF_STATE;
    item.hItem = HandleOf(place);
    item.state = CheckState(isChecked);
    item.stateMask = TVIS_STATEIMAGEMASK;
    ::SendMessageA(control_, TVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
  }
}

// Filled anew: opening one item after the other would lay out the tree each time.
void WinTree::Expand(bool isExpanded, HIMAGELIST pictures) {
  std::vector<TreeItem> items = Items();
  for (TreeItem& item : items) item.isExpanded = isExpanded;
  SetItems(std::move(items), pictures);
}

HTREEITEM WinTree::HandleOf(const TreePlace& place) const {
  return place.child ? children_[place.parent][*place.child] : parents_[place.parent];
}

TreePlace WinTree::PlaceOf(HTREEITEM item) const {
  TVITEMA asked = {};
  asked.mask = TVIF_PARAM;
  asked.hItem = item;
  ::SendMessageA(control_, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&asked));
  const auto mark = static_cast<uint64_t>(asked.lParam);
  TreePlace place{mark >> kMarkShift};
  if (const size_t ownPlusOne = mark & UINT32_MAX) place.child = ownPlusOne - 1;
  return place;
}

uintptr_t WinTree::DataOf(HTREEITEM item) const {
  if (item == nullptr) return 0;
  const TreePlace place = PlaceOf(item);
  const TreeItem& parent = items_[place.parent];
  return place.child ? parent.children[*place.child].data : parent.data;
}

HTREEITEM WinTree::Find(uintptr_t data) const {
  if (data == 0) return nullptr;
  for (size_t i = 0; i < items_.size(); ++i) {
    if (items_[i].data == data) return parents_[i];
    const auto& children = items_[i].children;
    const auto child = std::ranges::find(children, data, &TreeItem::data);
    if (child != children.end()) return children_[i][static_cast<size_t>(child - children.begin())];
  }
  return nullptr;
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
