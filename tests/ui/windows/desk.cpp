#include "desk.h"

#include <cstdio>
#include <cstdlib>
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

INPUT Key(WORD key, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyA(key, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  return input;
}

INPUT Character(char c, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wScan = static_cast<unsigned char>(c);
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

void Put(std::initializer_list<WORD> held, DWORD flags) {
  for (const WORD key : held) Put({Key(key, flags)});
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

HWND MakeWindow(int width, int height) {
  return ::CreateWindowExA(0, "Static", "Host", WS_POPUP | WS_VISIBLE, 300, 200, width, height,
                           nullptr, nullptr, nullptr, nullptr);
}

int Scaled(int pixels) { return ::MulDiv(pixels, static_cast<int>(::GetDpiForSystem()), 96); }

Desk::Desk(platform::DialogHandler& dialog) : thread_([this, &dialog] { BeHost(dialog); }) {
  Await(made_);
  Until([this] {
    Settle();
    dialog_ = ::GetLastActivePopup(host_);
    return dialog_ != host_ && ::IsWindowVisible(dialog_) != 0;
  });
}

Desk::~Desk() {
  while (IsOpen()) Press(VK_ESCAPE);
  ::PostMessageA(errands_, kEnd, 0, 0);
  thread_.join();
  for (const HANDLE event : {made_, settled_, ended_}) ::CloseHandle(event);
}

void Desk::MakeWindows() {
  host_ = MakeWindow(100, 100);
  if (host_ == nullptr) GiveUp("the display shows no windows");
  ::SetForegroundWindow(host_);
  errands_ =
      ::CreateWindowExA(0, "Static", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  ::SetWindowLongPtrA(errands_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  ::SetWindowLongPtrA(errands_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

void Desk::BeHost(platform::DialogHandler& dialog) {
  MakeWindows();
  ::SetEvent(made_);
  result_ = platform::DialogToolkit::Find()->Run(dialog, host_);
  ::SetEvent(ended_);
  MSG message = {};
  while (::GetMessageA(&message, nullptr, 0, 0) > 0) ::DispatchMessageA(&message);
}

LRESULT CALLBACK Desk::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* const desk = reinterpret_cast<Desk*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
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

void Desk::Settle() const {
  ::PostMessageA(errands_, kSettle, 0, 0);
  Await(settled_);
}

void Desk::Until(const std::function<bool()>& holds) const {
  const ULONGLONG start = ::GetTickCount64();
  while (!holds()) {
    if (::GetTickCount64() - start > kPatience) GiveUp("what was waited for doesn't come");
    ::Sleep(1);
  }
}

void Desk::InHost(const std::function<void()>& action) const {
  ::SendMessageA(errands_, kAct, 0, reinterpret_cast<LPARAM>(&action));
}

int Desk::Result() {
  Await(ended_);
  return result_;
}

HWND Desk::Front() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(errands_, nullptr), &info);
  return info.hwndActive;
}

HWND Desk::Focus() const {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(errands_, nullptr), &info);
  return info.hwndFocus;
}

std::string Desk::Text(int id) const {
  char text[512] = "";
  ::GetWindowTextA(At(id), text, sizeof text);
  return text;
}

RECT Desk::Place(int id) const {
  RECT rect = {};
  ::GetWindowRect(At(id), &rect);
  ::MapWindowPoints(nullptr, Front(), reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

void Desk::Press(WORD key, std::initializer_list<WORD> held) {
  Put(held, 0);
  Put({Key(key, 0), Key(key, KEYEVENTF_KEYUP)});
  Put(held, KEYEVENTF_KEYUP);
  Settle();
}

void Desk::Type(const std::string& text) {
  for (const char c : text) Put({Character(c, 0), Character(c, KEYEVENTF_KEYUP)});
  Settle();
}

void Desk::Type(int id, const std::string& text) {
  Click(id);
  Press(VK_HOME);
  Press(VK_END, {VK_SHIFT});
  Press(VK_DELETE);
  Type(text);
}

void Desk::Click(int id) { Click(At(id), Middle(At(id))); }

void Desk::Click(HWND control, POINT at, int times, std::initializer_list<WORD> held) {
  ::MapWindowPoints(control, nullptr, &at, 1);
  Put(held, 0);
  const DWORD time = NextClickTime();
  for (int i = 0; i < times; ++i) {
    Put({Mouse(at, MOUSEEVENTF_LEFTDOWN, time), Mouse(at, MOUSEEVENTF_LEFTUP, time)});
  }
  Put(held, KEYEVENTF_KEYUP);
  Settle();
}

void Desk::Hover(int id) const {
  POINT at = Middle(At(id));
  ::MapWindowPoints(At(id), nullptr, &at, 1);
  POINT now = {};
  ::GetCursorPos(&now);
  if (now.x != at.x || now.y != at.y) Put({Mouse(at, 0, 0)});
}

void Desk::DragEdge(int across, int down, SIZE by) {
  RECT rect = {};
  ::GetWindowRect(Front(), &rect);
  const auto place = [](int side, LONG first, LONG end) {
    return side < 0 ? first + 1 : side > 0 ? end - 2 : (first + end) / 2;
  };
  const POINT from = {place(across, rect.left, rect.right), place(down, rect.top, rect.bottom)};
  const POINT to = {from.x + across * by.cx, from.y + down * by.cy};
  const DWORD time = NextClickTime();
  Put({Mouse(from, MOUSEEVENTF_LEFTDOWN, time)});
  Settle();  // from here on the window has the mouse, wherever that is
  Put({Mouse(to, MOUSEEVENTF_LEFTUP, time)});
  Settle();
}

}  // namespace gantry::test
