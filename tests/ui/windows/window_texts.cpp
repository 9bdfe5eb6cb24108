#include "window_texts.h"

#include "win_desk.h"

namespace gantry::test {

namespace {

struct Control {
  HWND window;
  std::string kind;
  std::string text;
  RECT place;
  LONG_PTR style;

  bool Is(const char* name) const { return ::lstrcmpiA(kind.c_str(), name) == 0; }
  bool IsButtonOf(LONG_PTR type) const { return Is("Button") && (style & BS_TYPEMASK) == type; }
};

std::vector<Control> ControlsOf(HWND dialog) {
  std::vector<Control> controls;
  for (HWND window = ::GetWindow(dialog, GW_CHILD); window != nullptr;
       window = ::GetWindow(window, GW_HWNDNEXT)) {
    char kind[64] = "";
    RECT place = {};
    ::GetClassNameA(window, kind, sizeof kind);
    ::GetWindowRect(window, &place);
    ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    controls.push_back(
        {window, kind, WindowText(window), place, ::GetWindowLongPtrA(window, GWL_STYLE)});
  }
  return controls;
}

SIZE Extent(HWND window, const std::string& text) {
  const HDC context = ::GetDC(window);
  const auto font = reinterpret_cast<HFONT>(::SendMessageA(window, WM_GETFONT, 0, 0));
  const HGDIOBJ before = ::SelectObject(context, font);
  SIZE size = {};
  ::GetTextExtentPoint32A(context, text.c_str(), static_cast<int>(text.size()), &size);
  ::SelectObject(context, before);
  ::ReleaseDC(window, context);
  return size;
}

/// What a control takes for itself beside its text, at 96 dots to the inch.
SIZE Trim(const Control& control) {
  if (control.IsButtonOf(BS_AUTOCHECKBOX)) return {18, 0};
  if (control.IsButtonOf(BS_GROUPBOX)) return {16, 0};
  if (control.Is("Button")) return {6, 6};
  if (control.Is("ComboBox")) return {24, 0};  // as high as the system finds fit
  if (control.Is("Edit")) return {4, 4};
  return {0, 0};
}

bool HasRoom(const Control& control, const std::string& text) {
  const SIZE needed = Extent(control.window, text);
  const SIZE trim = Trim(control);
  return control.place.right - control.place.left >= needed.cx + Scaled(trim.cx) &&
         control.place.bottom - control.place.top >= needed.cy + Scaled(trim.cy);
}

/// Its own, or the items that can be chosen in it.
std::vector<std::string> TextsOf(const Control& control) {
  if (!control.Is("ComboBox")) return {control.text};
  std::vector<std::string> texts;
  const LRESULT count = ::SendMessageA(control.window, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    char text[256] = "";
    ::SendMessageA(control.window, CB_GETLBTEXT, static_cast<WPARAM>(i),
                   reinterpret_cast<LPARAM>(text));
    texts.emplace_back(text);
  }
  return texts;
}

bool Overlap(const RECT& a, const RECT& b) {
  RECT common = {};
  return ::IntersectRect(&common, &a, &b) != 0;
}

bool Holds(const RECT& outer, const RECT& inner) {
  RECT all = {};
  return ::UnionRect(&all, &outer, &inner) != 0 && ::EqualRect(&all, &outer) != 0;
}

}  // namespace

std::string WindowText(HWND window) {
  char text[512] = "";
  ::GetWindowTextA(window, text, sizeof text);
  return text;
}

std::vector<std::string> LayoutFaults(HWND dialog) {
  RECT inside = {};
  ::GetClientRect(dialog, &inside);
  std::vector<std::string> faults;
  const std::vector<Control> controls = ControlsOf(dialog);
  for (const Control& a : controls) {
    for (const std::string& text : TextsOf(a)) {
      if (!HasRoom(a, text)) faults.push_back(text + " is cut off");
    }
    if (!Holds(inside, a.place)) faults.push_back(a.kind + " " + a.text + " reaches out");
    for (const Control& b : controls) {
      const bool isGroup = a.IsButtonOf(BS_GROUPBOX) && Holds(a.place, b.place);
      if (&a < &b && Overlap(a.place, b.place) && !isGroup) {
        faults.push_back(a.text + " covers " + b.text);
      }
    }
  }
  return faults;
}

}  // namespace gantry::test
