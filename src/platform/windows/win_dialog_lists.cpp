// The drop lists, list boxes, list views and trees of a dialog.

#include <algorithm>
#include <set>

#include "platform/windows/win_dialog.h"

namespace gantry::platform {

namespace {

LPARAM TextOf(const std::string& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

int Scaled(int pixels, HWND window) {
  const HDC context = ::GetDC(window);
  const int dots = ::GetDeviceCaps(context, LOGPIXELSX);
  ::ReleaseDC(window, context);
  return ::MulDiv(pixels, dots, 96);
}

std::string FirstText(HWND list, size_t row) {
  char text[256] = "";
  LVITEMA item = {};
  item.pszText = text;
  item.cchTextMax = sizeof text;
  ::SendMessageA(list, LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(&item));
  return text;
}

void SelectRow(HWND list, size_t row) {
  LVITEMA item = {};
  item.state = item.stateMask = LVIS_SELECTED;
  ::SendMessageA(list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

void InsertRow(HWND list, int row, const std::vector<std::string>& texts, int picture) {
  LVITEMA item = {};
  item.iItem = row;
  for (size_t column = 0; column < texts.size(); ++column) {
    item.iSubItem = static_cast<int>(column);
    item.mask = column == 0 ? LVIF_TEXT | LVIF_IMAGE : LVIF_TEXT;
    item.iImage = PictureIndex(picture);
    item.pszText = const_cast<char*>(texts[column].c_str());
    ::SendMessageA(list, column == 0 ? LVM_INSERTITEMA : LVM_SETITEMA, 0,
                   reinterpret_cast<LPARAM>(&item));
  }
}

}  // namespace

void WinDialog::SetItems(int id, const std::vector<std::string>& items) {
  const ControlRow* const row = Row(id);
  if (row == nullptr) return;
  const bool isBox = row->kind == ControlKind::kListBox;
  size_t bytes = 0;
  for (const std::string& item : items) bytes += item.size() + 1;
  Send(id, WM_SETREDRAW, FALSE);
  Send(id, isBox ? LB_RESETCONTENT : CB_RESETCONTENT);
  Send(id, isBox ? LB_INITSTORAGE : CB_INITSTORAGE, items.size(), static_cast<LPARAM>(bytes));
  for (const std::string& item : items) {
    Send(id, isBox ? LB_ADDSTRING : CB_ADDSTRING, 0, TextOf(item));
  }
  Send(id, WM_SETREDRAW, TRUE);
  ::InvalidateRect(Item(id), nullptr, TRUE);
}

int WinDialog::Selection(int id) { return static_cast<int>(Send(id, CB_GETCURSEL)); }

void WinDialog::Select(int id, int index) { Send(id, CB_SETCURSEL, static_cast<WPARAM>(index)); }

void WinDialog::SetColumns(int id, const std::vector<ListColumn>& columns) {
  for (size_t i = 0; i < columns.size(); ++i) {
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = Scaled(columns[i].width, window_);
    column.pszText = const_cast<char*>(columns[i].title.c_str());
    Send(id, LVM_INSERTCOLUMNA, i, reinterpret_cast<LPARAM>(&column));
  }
}

void WinDialog::SetRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) {
  std::set<std::string> selected;
  for (const size_t row : SelectedRows(id)) selected.insert(FirstText(Item(id), row));
  Send(id, WM_SETREDRAW, FALSE);
  Send(id, LVM_DELETEALLITEMS);
  for (size_t i = 0; i < rows.size(); ++i) {
    InsertRow(Item(id), static_cast<int>(i), rows[i], picture);
    if (selected.contains(FirstText(Item(id), i))) SelectRow(Item(id), i);
  }
  Send(id, WM_SETREDRAW, TRUE);
  ::InvalidateRect(Item(id), nullptr, TRUE);
}

std::vector<size_t> WinDialog::SelectedRows(int id) {
  const ControlRow* const row = Row(id);
  if (row == nullptr) return {};
  std::vector<size_t> rows;
  if (row->kind == ControlKind::kListView) {
    for (auto next = Send(id, LVM_GETNEXTITEM, WPARAM(-1), LVNI_SELECTED); next >= 0;
         next = Send(id, LVM_GETNEXTITEM, static_cast<WPARAM>(next), LVNI_SELECTED)) {
      rows.push_back(static_cast<size_t>(next));
    }
    return rows;
  }
  std::vector<int> selected(static_cast<size_t>(std::max<LRESULT>(Send(id, LB_GETSELCOUNT), 0)));
  const LRESULT count =
      Send(id, LB_GETSELITEMS, selected.size(), reinterpret_cast<LPARAM>(selected.data()));
  selected.resize(static_cast<size_t>(std::max<LRESULT>(count, 0)));
  rows.assign(selected.begin(), selected.end());
  return rows;
}

void WinDialog::SelectAll(int id) { Send(id, LB_SETSEL, TRUE, -1); }

// By whole runs of rows: one row costs as much.
void WinDialog::InvertSelection(int id) {
  const std::vector<size_t> selected = SelectedRows(id);
  Send(id, WM_SETREDRAW, FALSE);
  SelectAll(id);
  for (size_t i = 0; i < selected.size();) {
    const size_t first = i++;
    while (i < selected.size() && selected[i] == selected[i - 1] + 1) ++i;
    Deselect(id, selected[first], selected[i - 1]);
  }
  Send(id, WM_SETREDRAW, TRUE);
  ::InvalidateRect(Item(id), nullptr, TRUE);
}

void WinDialog::Deselect(int id, size_t first, size_t last) {
  constexpr size_t kLastOfRun = 0xFFFF;  // what a list can take as the end of a run
  if (first < last && last <= kLastOfRun) {
    Send(id, LB_SELITEMRANGEEX, last, static_cast<LPARAM>(first));
    return;
  }
  for (size_t row = first; row <= last; ++row) {
    Send(id, LB_SETSEL, FALSE, static_cast<LPARAM>(row));
  }
}

WinTree* WinDialog::FindTree(int id) {
  const auto found = trees_.find(id);
  return found != trees_.end() ? &found->second : nullptr;
}

void WinDialog::SetTree(int id, std::vector<TreeItem> items) {
  if (WinTree* tree = FindTree(id)) tree->SetItems(std::move(items), pictures_);
}

std::vector<TreeItem> WinDialog::Tree(int id) {
  const WinTree* tree = FindTree(id);
  return tree != nullptr ? tree->Items() : std::vector<TreeItem>();
}

void WinDialog::SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) {
  if (WinTree* tree = FindTree(id)) tree->SetChecked(places, isChecked);
}

void WinDialog::ExpandTree(int id, bool isExpanded) {
  if (WinTree* tree = FindTree(id)) tree->Expand(isExpanded, pictures_);
}

}  // namespace gantry::platform
