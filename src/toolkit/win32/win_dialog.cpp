#include "toolkit/win32/win_dialog.h"

#include <algorithm>

#include "toolkit/win32/win_dialog_template.h"
#include "toolkit/win32/win_picture.h"

namespace gantry::platform {

namespace {

constexpr char kAnchor = 0;  ///< a place in this binary

HINSTANCE ThisModule() {
  HMODULE module = nullptr;
  ::GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      &kAnchor, &module);
  return module;
}

void AddStyle(HWND control, LONG_PTR style) {
  ::SetWindowLongPtrA(control, GWL_STYLE, ::GetWindowLongPtrA(control, GWL_STYLE) | style);
}

}  // namespace

WinDialog::~WinDialog() {
  if (pictures_ != nullptr) ::ImageList_Destroy(pictures_);
  for (const HICON icon : icons_) {
    if (icon != nullptr) ::DestroyIcon(icon);
  }
}

int WinDialog::Run(HWND parent) {
  const INITCOMMONCONTROLSEX wanted = {
      sizeof wanted, ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
  ::InitCommonControlsEx(&wanted);
  const std::vector<uint16_t> shape = InMemoryTemplate(handler_.Template());
  const INT_PTR result =
      ::DialogBoxIndirectParamA(ThisModule(), reinterpret_cast<LPCDLGTEMPLATEA>(shape.data()),
                                parent, &Procedure, reinterpret_cast<LPARAM>(this));
  return result > 0 ? static_cast<int>(result) : kCancelButton;
}

INT_PTR CALLBACK WinDialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrA(window, DWLP_USER, lParam);
    auto* const opened = reinterpret_cast<WinDialog*>(lParam);
    opened->window_ = window;
    opened->Open();
    return TRUE;
  }
  auto* const dialog = reinterpret_cast<WinDialog*>(::GetWindowLongPtrA(window, DWLP_USER));
  return dialog != nullptr ? dialog->OnMessage(message, wParam, lParam) : FALSE;
}

INT_PTR WinDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wParam), HIWORD(wParam));
      return TRUE;
    case WM_NOTIFY:
      ::SetWindowLongPtrA(window_, DWLP_MSGRESULT,
                          OnNotify(*reinterpret_cast<const NMHDR*>(lParam)));
      return TRUE;
    case WM_SIZING:
      handler_.OnSizing(*this, static_cast<int>(wParam));
      return FALSE;
    case WM_SIZE:
      OnSize(wParam);
      return FALSE;
    case WM_DESTROY:
      OnDestroy();
      return FALSE;
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {leastSize_.cx, leastSize_.cy};
      return FALSE;
    default:
      return FALSE;
  }
}

void WinDialog::Open() {
  RECT rect = {};
  ::GetWindowRect(window_, &rect);
  leastSize_ = {rect.right - rect.left, rect.bottom - rect.top};
  SetIcons();
  MakePictures();
  PrepareControls();
  MakeToolTips();
  handler_.OnOpen(*this);
  handler_.OnSize(*this, ClientSize());
  isOpen_ = true;
}

void WinDialog::SetIcons() {
  icons_[ICON_SMALL] = MakeIcon(kSimulatorPicture, ::GetSystemMetrics(SM_CXSMICON));
  icons_[ICON_BIG] = MakeIcon(kSimulatorPicture, ::GetSystemMetrics(SM_CXICON));
  for (const WPARAM kind : {WPARAM{ICON_SMALL}, WPARAM{ICON_BIG}}) {
    ::SendMessageA(window_, WM_SETICON, kind, reinterpret_cast<LPARAM>(icons_[kind]));
  }
}

void WinDialog::MakePictures() {
  constexpr int kSize = 16;
  pictures_ = ::ImageList_Create(kSize, kSize, ILC_COLOR32 | ILC_MASK, 2, 0);
  for (const Picture picture : {kWellPicture, kVariablePicture}) {
    const HICON icon = MakeIcon(picture, kSize);
    ::ImageList_ReplaceIcon(pictures_, -1, icon);
    ::DestroyIcon(icon);
  }
}

void WinDialog::PrepareControls() {
  for (const ControlRow& row : handler_.Template().controls) {
    const HWND control = Item(row.id);
    if (row.kind == ControlKind::kTree) {
      // The boxes come only with a style that is set on a tree that stands.
      AddStyle(control, TVS_CHECKBOXES);
      trees_.emplace(row.id, WinTree(control));
    } else if (row.kind == ControlKind::kListView) {
      ::SendMessageA(control, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT,
                     LVS_EX_FULLROWSELECT);
      // The list would destroy the pictures with itself otherwise.
      AddStyle(control, LVS_SHAREIMAGELISTS);
      ::SendMessageA(control, LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(pictures_));
    }
  }
}

void WinDialog::MakeToolTips() {
  toolTips_ =
      ::CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr,
                        WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                        CW_USEDEFAULT, CW_USEDEFAULT, window_, nullptr, ThisModule(), nullptr);
  ::SendMessageA(toolTips_, TTM_SETDELAYTIME, TTDT_AUTOPOP, kToolTipMilliseconds);
  for (const ControlRow& row : handler_.Template().controls) {
    if (row.toolTip != nullptr) SetToolTip(row.id, row.toolTip);
  }
}

void WinDialog::SetToolTip(int id, const std::string& text) {
  TTTOOLINFOA tool = {};
  tool.cbSize = TTTOOLINFOA_V2_SIZE;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = window_;
  tool.uId = reinterpret_cast<UINT_PTR>(Item(id));
  tool.lpszText = const_cast<char*>(text.c_str());
  ::SendMessageA(toolTips_, TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
  ::SendMessageA(toolTips_, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

const ControlRow* WinDialog::Row(int id) const {
  const auto& rows = handler_.Template().controls;
  const auto found = std::ranges::find(rows, id, &ControlRow::id);
  return found != rows.end() ? &*found : nullptr;
}

void WinDialog::OnCommand(int id, int code) {
  const ControlRow* const row = Row(id);
  if (!isOpen_ || row == nullptr) return;
  const bool isButton = row->kind == ControlKind::kButton || row->kind == ControlKind::kCheckBox;
  if (isButton && code == BN_CLICKED && ::IsWindowEnabled(Item(id)) != 0) {
    handler_.OnButton(*this, id);
  } else if (row->kind == ControlKind::kDropList && code == CBN_SELCHANGE) {
    handler_.OnSelection(*this, id);
  }
}

// What the system is told to do about a notice: only painting a tree asks.
LRESULT WinDialog::OnNotify(const NMHDR& notice) {
  const auto found = trees_.find(static_cast<int>(notice.idFrom));
  if (found == trees_.end()) return 0;
  if (notice.code == NM_CUSTOMDRAW) {
    return found->second.OnPaint(reinterpret_cast<const NMTVCUSTOMDRAW&>(notice));
  }
  if (isOpen_) OnTreeNotice(found->first, found->second, notice);
  return 0;
}

void WinDialog::OnTreeNotice(int id, WinTree& tree, const NMHDR& notice) {
  const auto is = [&notice](UINT code) { return notice.code == code; };
  std::optional<TreePlace> place;
  if (is(NM_CLICK) || is(NM_DBLCLK)) place = tree.PlaceUnderCursor();
  if (is(TVN_KEYDOWN) && reinterpret_cast<const NMTVKEYDOWN&>(notice).wVKey == VK_SPACE) {
    place = tree.ChosenPlace();
  }
  if (place) {
    tree.Toggle(*place);
  } else if (is(TVN_ITEMCHANGEDA) || is(TVN_ITEMCHANGEDW)) {
    // Checked by a program in the user's stead, such as a screen reader.
    place = tree.TakeChange(reinterpret_cast<const NMTVITEMCHANGE&>(notice));
  }
  if (place) handler_.OnTreeCheck(*this, id, *place);
}

void WinDialog::OnSize(WPARAM kind) {
  if (isOpen_ && kind != SIZE_MINIMIZED) handler_.OnSize(*this, ClientSize());
}

// The host's window takes the dialog with it: that counts as giving up. The dialog's loop looks for
// its window only after a message.
void WinDialog::OnDestroy() {
  if (isOpen_ && !isClosed_) {
    handler_.OnButton(*this, kCancelButton);
    ::PostThreadMessageA(::GetCurrentThreadId(), WM_NULL, 0, 0);
  }
  for (auto& [id, tree] : trees_) tree.Release();
}

void WinDialog::Close(int result) {
  isClosed_ = true;
  ::EndDialog(window_, result);
}

void* WinDialog::Handle() { return window_; }

PixelSize WinDialog::ClientSize() {
  RECT rect = {};
  ::GetClientRect(window_, &rect);
  return {rect.right, rect.bottom};
}

void WinDialog::Redraw() {
  ::RedrawWindow(window_, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void WinDialog::Enable(int id, bool isEnabled) {
  ::EnableWindow(Item(id), isEnabled ? TRUE : FALSE);
}

PixelRect WinDialog::Rect(int id) {
  RECT rect = {};
  ::GetWindowRect(Item(id), &rect);
  ::MapWindowPoints(nullptr, window_, reinterpret_cast<POINT*>(&rect), 2);
  return {rect.left, rect.top, rect.right, rect.bottom};
}

void WinDialog::Move(int id, const PixelRect& rect) {
  ::MoveWindow(Item(id), rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

void WinDialog::Focus(int id) {
  ::SendMessageA(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(Item(id)), TRUE);
}

std::string WinDialog::Text(int id) {
  const int length = ::GetWindowTextLengthA(Item(id));
  std::string text(static_cast<size_t>(length) + 1, '\0');
  const int copied = ::GetWindowTextA(Item(id), text.data(), length + 1);
  text.resize(static_cast<size_t>(copied));
  return text;
}

void WinDialog::SetText(int id, const std::string& text) {
  ::SetWindowTextA(Item(id), text.c_str());
}

void WinDialog::PutCaretBehindText(int id) {
  const auto end = static_cast<WPARAM>(::GetWindowTextLengthA(Item(id)));
  Send(id, EM_SETSEL, end, static_cast<LPARAM>(end));
}

bool WinDialog::IsChecked(int id) { return Send(id, BM_GETCHECK) == BST_CHECKED; }

void WinDialog::SetChecked(int id, bool isChecked) {
  Send(id, BM_SETCHECK, isChecked ? BST_CHECKED : BST_UNCHECKED);
}

}  // namespace gantry::platform
