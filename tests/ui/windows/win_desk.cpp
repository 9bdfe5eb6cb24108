#include "win_desk.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace gantry::test {

namespace {

/// How long a host may take to answer, in milliseconds: beyond it nothing will come any more.
constexpr DWORD kPatience = 100'000;
constexpr UINT kSettle = WM_APP + 1;
constexpr UINT kAct = WM_APP + 2;
constexpr UINT kEnd = WM_APP + 3;
constexpr UINT_PTR kTimer = 1;

[[noreturn]] void GiveUp(const char* reason) {
  std::fprintf(stderr, "%s\n", reason);
  std::_Exit(EXIT_FAILURE);
}

void Await(HANDLE event) {
  if (::WaitForSingleObject(event, kPatience) != WAIT_OBJECT_0) GiveUp("the host doesn't answer");
}

INPUT KeyInput(WORD key, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  return input;
}

INPUT Character(wchar_t c, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wScan = static_cast<WORD>(c);
  input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
  return input;
}

/// At a place in 65536ths of the screen, rounded so that the pixel comes out again.
INPUT Mouse(POINT at, DWORD button, DWORD time) {
  const auto fraction = [](LONG pixel, int metric) {
    const int size = ::GetSystemMetrics(metric);
    return static_cast<LONG>((static_cast<long long>(pixel) * 65536 + size - 1) / size);
  };
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button;
  input.mi.time = time;
  input.mi.dx = fraction(at.x, SM_CXSCREEN);
  input.mi.dy = fraction(at.y, SM_CYSCREEN);
  return input;
}

void Put(std::vector<INPUT> inputs) {
  ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof inputs[0]);
}

/// Later than the last one by more than a double click takes.
DWORD NextClickTime() {
  static DWORD time = ::GetTickCount();
  return time += 10 * ::GetDoubleClickTime();
}

POINT Middle(HWND control) {
  RECT rect = {};
  ::GetClientRect(control, &rect);
  return {rect.right / 2, rect.bottom / 2};
}

}  // namespace

std::string WindowText(HWND window) {
  char text[512] = "";
  ::GetWindowTextA(window, text, sizeof text);
  return text;
}

HWND MakeWindow(int width, int height) {
  return ::CreateWindowExA(0, "Static", "Host", WS_POPUP | WS_VISIBLE, 300, 200, width, height,
                           nullptr, nullptr, nullptr, nullptr);
}

WinDesk::WinDesk(platform::DialogHandler& dialog) : thread_([this, &dialog] { BeHost(dialog); }) {
  Await(made_);
  Until([this] {
    Settle();
    dialog_ = ::GetLastActivePopup(host_);
    return dialog_ != host_ && ::IsWindowVisible(dialog_) != 0;
  });
}

WinDesk::~WinDesk() {
  GiveUpDialogs();
  ::PostMessageA(errands_, kEnd, 0, 0);
  thread_.join();
  for (const HANDLE event : {made_, settled_, ended_}) ::CloseHandle(event);
}

void WinDesk::MakeWindows() {
  host_ = MakeWindow(100, 100);
  if (host_ == nullptr) GiveUp("the display shows no windows");
  ::SetForegroundWindow(host_);
  errands_ =
      ::CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ::SetWindowLongPtrA(errands_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  ::SetWindowLongPtrA(errands_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

void WinDesk::BeHost(platform::DialogHandler& dialog) {
  MakeWindows();
  ::SetEvent(made_);
  result_ = platform::DialogToolkit::Find()->Run(dialog, host_);
  ::SetEvent(ended_);
  MSG message = {};
  while (::GetMessageA(&message, nullptr, 0, 0) > 0) ::DispatchMessageA(&message);
}

LRESULT CALLBACK WinDesk::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const desk =
      reinterpret_cast<const WinDesk*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
  switch (message) {
    case kSettle:
      return static_cast<LRESULT>(::SetTimer(window, kTimer, USER_TIMER_MINIMUM, nullptr));
    case WM_TIMER:
      ::KillTimer(window, kTimer);
      return ::SetEvent(desk->settled_);
    case kAct:
      (*reinterpret_cast<const std::function<void()>*>(lParam))();
      return 0;
    case kEnd:
      ::DestroyWindow(desk->host_);
      ::DestroyWindow(window);
      ::PostQuitMessage(0);
      return 0;
    default:
      return ::DefWindowProcA(window, message, wParam, lParam);
  }
}

void WinDesk::Settle() const {
  ::PostMessageA(errands_, kSettle, 0, 0);
  Await(settled_);
}

void WinDesk::Until(const std::function<bool()>& holds) const {
  const ULONGLONG start = ::GetTickCount64();
  while (!holds()) {
    if (::GetTickCount64() - start > kPatience) GiveUp("what was waited for doesn't come");
    ::Sleep(1);
  }
}

void WinDesk::InHost(const std::function<void()>& action) {
  ::SendMessageA(errands_, kAct, 0, reinterpret_cast<LPARAM>(&action));
}

int WinDesk::Result() {
  Await(ended_);
  return result_;
}

GUITHREADINFO WinDesk::ThreadInfo() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(errands_, nullptr), &info);
  return info;
}

std::string WinDesk::Title() { return WindowText(Front()); }

std::string WinDesk::Message() {
  constexpr int kMessageText = 0xFFFF;  // the system's id
  return WindowText(At(kMessageText));
}

HTREEITEM WinDesk::Item(int tree, const platform::TreePlace& place) const {
  const auto next = [&](UINT which, HTREEITEM item) {
    return reinterpret_cast<HTREEITEM>(
        Send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(item)));
  };
  HTREEITEM item = next(TVGN_ROOT, nullptr);
  for (size_t i = 0; i < place.parent; ++i) item = next(TVGN_NEXT, item);
  if (!place.child) return item;
  item = next(TVGN_CHILD, item);
  for (size_t i = 0; i < *place.child; ++i) item = next(TVGN_NEXT, item);
  return item;
}

UINT WinDesk::StateOf(int tree, HTREEITEM item) const {
  return static_cast<UINT>(Send(tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), UINT_MAX));
}

bool WinDesk::ShowsCheck(int tree, const platform::TreePlace& place) {
  const HTREEITEM item = Item(tree, place);
  InHost([&] {
    Send(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    ::UpdateWindow(At(tree));
  });
  return (StateOf(tree, item) & TVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
}

bool WinDesk::IsOpen(int tree, size_t parent) {
  return (StateOf(tree, Item(tree, {parent})) & TVIS_EXPANDED) != 0;
}

void WinDesk::Press(Key key) {
  constexpr WORD kKeys[] = {VK_TAB, VK_RETURN, VK_ESCAPE, VK_SPACE, VK_DOWN};
  const WORD code = kKeys[static_cast<size_t>(key)];
  Put({KeyInput(code, 0), KeyInput(code, KEYEVENTF_KEYUP)});
  Settle();
}

void WinDesk::GiveUpDialogs() {
  constexpr int kMostDialogs = 10;
  for (int i = 0; IsDialogOpen(); ++i) {
    if (i == kMostDialogs) GiveUp("the dialog doesn't end");
    Press(Key::kEscape);
  }
}

void WinDesk::TypeWide(const std::wstring& text) {
  for (const wchar_t c : text) Put({Character(c, 0), Character(c, KEYEVENTF_KEYUP)});
  Settle();
}

void WinDesk::Click(int id) { Click(At(id), Middle(At(id))); }

void WinDesk::Click(HWND control, POINT at, int times, bool isOneMore) {
  ::MapWindowPoints(control, nullptr, &at, 1);
  if (isOneMore) Put({KeyInput(VK_CONTROL, 0)});
  const DWORD time = NextClickTime();
  for (int i = 0; i < times; ++i) {
    Put({Mouse(at, MOUSEEVENTF_LEFTDOWN, time), Mouse(at, MOUSEEVENTF_LEFTUP, time)});
  }
  if (isOneMore) Put({KeyInput(VK_CONTROL, KEYEVENTF_KEYUP)});
  Settle();
}

void WinDesk::ClickRow(int list, int row, bool isOneMore) {
  char kind[32] = "";
  ::GetClassNameA(At(list), kind, sizeof kind);
  RECT rect = {LVIR_LABEL, 0, 0, 0};
  const bool isView = ::lstrcmpiA(kind, WC_LISTVIEWA) == 0;
  Send(list, isView ? LVM_GETITEMRECT : LB_GETITEMRECT, static_cast<WPARAM>(row),
       reinterpret_cast<LPARAM>(&rect));
  Click(At(list), {rect.left + 5, (rect.top + rect.bottom) / 2}, 1, isOneMore);
}

void WinDesk::ClickTree(int tree, const platform::TreePlace& place, int right, int times) {
  const HTREEITEM item = Item(tree, place);
  RECT text = {};
  std::memcpy(&text, &item, sizeof item);
  Send(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text));
  Click(At(tree), {text.left + right, (text.top + text.bottom) / 2}, times);
}

void WinDesk::ClickItem(int tree, const platform::TreePlace& place) {
  ClickTree(tree, place, 5, 1);
}

// The box stands left of the item's picture.
void WinDesk::ClickBox(int tree, const platform::TreePlace& place, int times) {
  ClickTree(tree, place, -16 - 3 - 8, times);
}

void WinDesk::Maximize(bool isMaximized) {
  InHost([&] { ::ShowWindow(Front(), isMaximized ? SW_MAXIMIZE : SW_RESTORE); });
}

void WinDesk::DragEdge(int across, int down, platform::PixelSize by) {
  RECT rect = {};
  ::GetWindowRect(Front(), &rect);
  const auto place = [](int side, LONG first, LONG end) {
    return side < 0 ? first + 1 : side > 0 ? end - 2 : (first + end) / 2;
  };
  const POINT from = {place(across, rect.left, rect.right), place(down, rect.top, rect.bottom)};
  const POINT to = {from.x + across * by.width, from.y + down * by.height};
  const DWORD time = NextClickTime();
  Put({Mouse(from, MOUSEEVENTF_LEFTDOWN, time)});
  Settle();  // from here on the window has the mouse, wherever that is
  Put({Mouse(to, MOUSEEVENTF_LEFTUP, time)});
  Settle();
}

int AtDesk(platform::DialogHandler& dialog, const std::function<void(Desk&)>& work) {
  WinDesk desk(dialog);
  work(desk);
  desk.GiveUpDialogs();
  return desk.Result();
}

bool ShowsWaitCursor() { return ::GetCursor() == ::LoadCursorA(nullptr, IDC_WAIT); }

}  // namespace gantry::test
