// The drop lists, list boxes, list views and trees of a dialog.

#include <algorithm>
#include <ranges>

#include "toolkit/win32/win_dialog.h"

namespace gantry::platform {

namespace {

LPARAM TextOf(const std::string& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

int Scaled(int pixels, HWND window) {
  const HDC context = ::GetDC(window);
  const int dots = ::GetDeviceCaps(context, LOGPIXELSX);
  ::ReleaseDC(window, context);
  return ::MulDiv(pixels, dots, 96);
}

/// In pixels, in the font of a control.
int WidestText(HWND control, const std::vector<std::string>& texts) {
  const HDC context = ::GetDC(control);
  const auto font = reinterpret_cast<HFONT>(::SendMessageA(control, WM_GETFONT, 0, 0));
  const HGDIOBJ before = ::SelectObject(context, font);
  LONG widest = 0;
  for (const std::string& text : texts) {
    SIZE size = {};
    ::GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
    widest = std::max(widest, size.cx);
  }
  ::SelectObject(context, before);
  ::ReleaseDC(control, context);
  return static_cast<int>(widest);
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
  const bool isBox = Row(id)->kind == ControlKind::kListBox;
  size_t bytes = 0;
  for (const std::string& item : items) bytes += item.size() + 1;
  Send(id, WM_SETREDRAW, FALSE);
  Send(id, isBox ? LB_RESETCONTENT : CB_RESETCONTENT);
  Send(id, isBox ? LB_INITSTORAGE : CB_INITSTORAGE, items.size(), static_cast<LPARAM>(bytes));
  for (const std::string& item : items) {
    Send(id, isBox ? LB_ADDSTRING : CB_ADDSTRING, 0, TextOf(item));
  }
  if (isBox) FitScrollBar(id, items);
  Send(id, WM_SETREDRAW, TRUE);
  ::InvalidateRect(Item(id), nullptr, TRUE);
}

void WinDialog::FitScrollBar(int id, const std::vector<std::string>& items) const {
  constexpr int kMargin = 4;
  const int width = WidestText(Item(id), items) + Scaled(kMargin, window_);
  Send(id, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width));
}

int WinDialog::Selection(int id) { return static_cast<int>(Send(id, CB_GETCURSEL)); }

void WinDialog::Select(int id, int index) {
  const bool isItem = index < Send(id, CB_GETCOUNT);
  Send(id, CB_SETCURSEL, static_cast<WPARAM>(isItem ? index : -1));
}

void WinDialog::SetColumns(int id, const std::vector<ListColumn>& columns) {
  for (size_t i = 0; i < columns.size(); ++i) {
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = Scaled(columns[i].width, window_);
    column.pszText = const_cast<char*>(columns[i].title.c_str());
    Send(id, LVM_INSERTCOLUMNA, i, reinterpret_cast<LPARAM>(&column));
  }
}

void WinDialog::AddRows(int id, const std::vector<std::vector<std::string>>& rows, int picture) {
  auto next = static_cast<int>(Send(id, LVM_GETITEMCOUNT));
  Send(id, WM_SETREDRAW, FALSE);
  for (const auto& row : rows) InsertRow(Item(id), next++, row, picture);
  Send(id, WM_SETREDRAW, TRUE);
  ::InvalidateRect(Item(id), nullptr, TRUE);
}

void WinDialog::RemoveRows(int id, const std::vector<size_t>& rows) {
  for (const size_t row : rows | std::views::reverse) Send(id, LVM_DELETEITEM, row);
}

std::vector<size_t> WinDialog::SelectedRows(int id) {
  std::vector<size_t> rows;
  if (Row(id)->kind == ControlKind::kListView) {
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

void WinDialog::SetTree(int id, std::vector<TreeItem> items) {
  trees_.at(id).SetItems(std::move(items), pictures_);
}

void WinDialog::SetTreeChecked(int id, const std::vector<TreePlace>& places, bool isChecked) {
  trees_.at(id).SetChecked(places, isChecked);
}

void WinDialog::ExpandTree(int id, bool isExpanded) { trees_.at(id).Expand(isExpanded, pictures_); }

}  // namespace gantry::platform
