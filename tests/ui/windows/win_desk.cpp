// A desk of Win32: a host that shows one dialog over its window, on a thread of its own; the person
// before it is on the thread of the test.
//
// Keys and mouse go in by `SendInput`, at the place where the system takes over from their drivers.
// The host has dealt with them when a timer's message has come, which comes only when no input is
// left to fetch. Clicks have times of their own, so that two of them are a double click only where
// one is meant.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <map>
#include <thread>

#include "platform/windows/win32.h"
#include "ui/desk.h"
//
#include <commctrl.h>

namespace gantry::test {

namespace {

using platform::TreePlace;

/// How long a host may take to answer, in milliseconds: beyond it nothing will come any more.
constexpr DWORD kPatience = 100'000;
constexpr UINT kSettle = WM_APP + 1;
constexpr UINT kAct = WM_APP + 2;
constexpr UINT kEnd = WM_APP + 3;
constexpr UINT_PTR kTimer = 1;

constexpr int kNoDesktop = 2;  // as run-on-desktop knows it

[[noreturn]] void GiveUp(const char* reason, int status = EXIT_FAILURE) {
  std::fprintf(stderr, "%s\n", reason);
  std::_Exit(status);
}

void Await(HANDLE event) {
  if (::WaitForSingleObject(event, kPatience) != WAIT_OBJECT_0) GiveUp("the host doesn't answer");
}

/// A key by its code, or where that is 0 a character by `scan`.
void PutKey(WORD code, wchar_t scan, std::initializer_list<DWORD> flags) {
  for (const DWORD flag : flags) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.wScan = static_cast<WORD>(code == 0 ? scan : ::MapVirtualKeyA(code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flag | (code == 0 ? KEYEVENTF_UNICODE : 0);
    ::SendInput(1, &input, sizeof input);
  }
}

/// At a place in 65536ths of the screen, rounded so that the pixel comes out again.
void PutMouse(POINT at, DWORD button, DWORD time) {
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
  ::SendInput(1, &input, sizeof input);
}

/// Later than the last one by more than a double click takes.
DWORD NextClickTime() {
  static DWORD time = ::GetTickCount();
  return time += 10 * ::GetDoubleClickTime();
}

class WinDesk : public Desk {
 public:
  /// Returns when the dialog is seen.
  explicit WinDesk(platform::DialogHandler& dialog) : thread_([this, &dialog] { BeHost(dialog); }) {
    Await(made_);
    const ULONGLONG start = ::GetTickCount64();
    for (Settle(); dialog_ == nullptr || ::IsWindowVisible(dialog_) == 0; Settle()) {
      if (::GetTickCount64() - start > kPatience) GiveUp("the dialog isn't seen");
      dialog_ = ::GetLastActivePopup(host_) != host_ ? ::GetLastActivePopup(host_) : nullptr;
    }
  }
  ~WinDesk() override {
    GiveUpDialogs();
    ::PostMessageA(errands_, kEnd, 0, 0);
    thread_.join();
    for (const HANDLE event : {made_, settled_, ended_}) ::CloseHandle(event);
  }
  WinDesk(const WinDesk&) = delete;
  WinDesk& operator=(const WinDesk&) = delete;

  void GiveUpDialogs() {
    constexpr int kMostDialogs = 10;
    for (int i = 0; ::IsWindow(dialog_) != 0; ++i) {
      if (i == kMostDialogs) GiveUp("the dialog doesn't end");
      Press("escape");
    }
  }
  /// Waits for the end of the dialog; what its run returned.
  int Result() {
    Await(ended_);
    return result_;
  }

  void InHost(const std::function<void()>& action) override {
    ::SendMessageA(errands_, kAct, 0, reinterpret_cast<LPARAM>(&action));
  }
  std::string Title() override { return TextOf(Front()); }
  std::string Message() override {
    constexpr int kMessageText = 0xFFFF;  // the system's id
    return TextOf(At(kMessageText));
  }
  int Focus() override { return ::GetDlgCtrlID(ThreadInfo().hwndFocus); }
  bool ShowsCheck(int tree, const TreePlace& place) override {
    const HTREEITEM item = Item(tree, place);
    InHost([&] {
      Send(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
      ::UpdateWindow(At(tree));
    });
    return (StateOf(tree, item) & TVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
  }
  bool IsOpen(int tree, size_t parent) override {
    return (StateOf(tree, Item(tree, {parent})) & TVIS_EXPANDED) != 0;
  }

  void Press(const std::string& key) override {
    const std::map<std::string, WORD> keys = {{"tab", VK_TAB},
                                              {"enter", VK_RETURN},
                                              {"escape", VK_ESCAPE},
                                              {"space", VK_SPACE},
                                              {"down", VK_DOWN}};
    PutKey(keys.at(key), 0, {0, KEYEVENTF_KEYUP});
    Settle();
  }
  void Type(const std::wstring& text) override {
    for (const wchar_t c : text) PutKey(0, c, {0, KEYEVENTF_KEYUP});
    Settle();
  }
  void Click(int id) override {
    RECT rect = {};
    ::GetClientRect(At(id), &rect);
    Click(At(id), {rect.right / 2, rect.bottom / 2});
  }
  void ClickRow(int list, int row, bool isOneMore) override {
    char kind[32] = "";
    ::GetClassNameA(At(list), kind, sizeof kind);
    RECT rect = {LVIR_LABEL, 0, 0, 0};
    const bool isView = ::lstrcmpiA(kind, WC_LISTVIEWA) == 0;
    Send(list, isView ? LVM_GETITEMRECT : LB_GETITEMRECT, static_cast<WPARAM>(row),
         reinterpret_cast<LPARAM>(&rect));
    if (isOneMore) PutKey(VK_CONTROL, 0, {0});
    Click(At(list), {rect.left + 5, (rect.top + rect.bottom) / 2});
    if (isOneMore) PutKey(VK_CONTROL, 0, {KEYEVENTF_KEYUP});
    Settle();
  }
  void ClickItem(int tree, const TreePlace& place, bool onBox, int times) override {
    const HTREEITEM item = Item(tree, place);
    RECT text = {};
    std::memcpy(&text, &item, sizeof item);
    Send(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text));
    // The box stands left of the item's picture.
    const LONG right = onBox ? -16 - 3 - 8 : 5;
    Click(At(tree), {text.left + right, (text.top + text.bottom) / 2}, times);
  }
  void Maximize(bool isMaximized) override {
    InHost([&] { ::ShowWindow(Front(), isMaximized ? SW_MAXIMIZE : SW_RESTORE); });
  }
  void DragEdge(int across, int down, platform::PixelSize by) override {
    RECT rect = {};
    ::GetWindowRect(Front(), &rect);
    const auto place = [](int side, LONG first, LONG end) {
      return side < 0 ? first + 1 : side > 0 ? end - 2 : (first + end) / 2;
    };
    const POINT from = {place(across, rect.left, rect.right), place(down, rect.top, rect.bottom)};
    const DWORD time = NextClickTime();
    PutMouse(from, MOUSEEVENTF_LEFTDOWN, time);
    Settle();  // from here on the window has the mouse, wherever that is
    PutMouse({from.x + across * by.width, from.y + down * by.height}, MOUSEEVENTF_LEFTUP, time);
    Settle();
  }

 private:
  void BeHost(platform::DialogHandler& dialog) {
    host_ = ::CreateWindowExA(0, "Static", "Host", WS_POPUP | WS_VISIBLE, 300, 200, 100, 100,
                              nullptr, nullptr, nullptr, nullptr);
    if (host_ == nullptr) GiveUp("the display shows no windows", kNoDesktop);
    ::SetForegroundWindow(host_);
    errands_ =
        ::CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ::SetWindowLongPtrA(errands_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    ::SetWindowLongPtrA(errands_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
    ::SetEvent(made_);
    result_ = platform::DialogToolkit::Find()->Run(dialog, host_);
    ::SetEvent(ended_);
    MSG message = {};
    while (::GetMessageA(&message, nullptr, 0, 0) > 0) ::DispatchMessageA(&message);
  }

  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
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

  /// Waits until all that was done so far has been dealt with.
  void Settle() const {
    ::PostMessageA(errands_, kSettle, 0, 0);
    Await(settled_);
  }
  GUITHREADINFO ThreadInfo() const {
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    ::GetGUIThreadInfo(::GetWindowThreadProcessId(errands_, nullptr), &info);
    return info;
  }
  /// The window that has the keyboard, the dialog or what has come up over it.
  HWND Front() const { return ThreadInfo().hwndActive; }
  HWND At(int id) const { return ::GetDlgItem(Front(), id); }
  LRESULT Send(int id, UINT message, WPARAM wParam, LPARAM lParam) const {
    return ::SendMessageA(At(id), message, wParam, lParam);
  }
  static std::string TextOf(HWND window) {
    char text[512] = "";
    ::GetWindowTextA(window, text, sizeof text);
    return text;
  }

  HTREEITEM Item(int tree, const TreePlace& place) const {
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
  UINT StateOf(int tree, HTREEITEM item) const {
    return static_cast<UINT>(
        Send(tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item), UINT_MAX));
  }
  void Click(HWND control, POINT at, int times = 1) {
    ::MapWindowPoints(control, nullptr, &at, 1);
    const DWORD time = NextClickTime();
    for (int i = 0; i < times; ++i) {
      PutMouse(at, MOUSEEVENTF_LEFTDOWN, time);
      PutMouse(at, MOUSEEVENTF_LEFTUP, time);
    }
    Settle();
  }

  HANDLE made_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE settled_ = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
  HANDLE ended_ = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
  HWND host_ = nullptr;
  HWND errands_ = nullptr;  ///< takes what is asked of the host's thread
  HWND dialog_ = nullptr;
  int result_ = 0;
  std::thread thread_;
};

}  // namespace

int AtDesk(platform::DialogHandler& dialog, const std::function<void(Desk&)>& work) {
  WinDesk desk(dialog);
  work(desk);
  desk.GiveUpDialogs();
  return desk.Result();
}

bool ShowsWaitCursor() { return ::GetCursor() == ::LoadCursorA(nullptr, IDC_WAIT); }

}  // namespace gantry::test
