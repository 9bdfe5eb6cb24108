#include "window_texts.h"

#include "win_desk.h"

namespace gantry::test {

namespace {

/// A kind of control, and what it takes for itself beside its text, at 96 dots to the inch.
struct Trim {
  const char* kind;
  LONG_PTR buttonType;  ///< where it matters
  SIZE size;
};
constexpr Trim kTrims[] = {{"Button", BS_AUTOCHECKBOX, {18, 0}},
                           {"Button", BS_GROUPBOX, {16, 0}},
                           {"Button", -1, {6, 6}},
                           {"ComboBox", -1, {24, 0}},  // as high as the system finds fit
                           {"Edit", -1, {4, 4}}};

SIZE TrimOf(HWND control, const char* kind) {
  const LONG_PTR type = ::GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK;
  for (const Trim& trim : kTrims) {
    if (::lstrcmpiA(kind, trim.kind) != 0) continue;
    if (trim.buttonType < 0 || trim.buttonType == type) return trim.size;
  }
  return {0, 0};
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

/// Its own, or the items that can be chosen in it.
std::vector<std::string> TextsOf(HWND control) {
  std::vector<std::string> texts = {WindowText(control)};
  const LRESULT count = ::SendMessageA(control, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    char text[256] = "";
    ::SendMessageA(control, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    texts.emplace_back(text);
  }
  return texts;
}

}  // namespace

std::string WindowText(HWND window) {
  char text[512] = "";
  ::GetWindowTextA(window, text, sizeof text);
  return text;
}

std::vector<std::string> CutOffTexts(HWND dialog) {
  std::vector<std::string> cut;
  for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
       control = ::GetWindow(control, GW_HWNDNEXT)) {
    char kind[64] = "";
    ::GetClassNameA(control, kind, sizeof kind);
    const SIZE trim = TrimOf(control, kind);
    RECT place = {};
    ::GetWindowRect(control, &place);
    for (const std::string& text : TextsOf(control)) {
      const SIZE needed = Extent(control, text);
      const bool hasRoom = place.right - place.left >= needed.cx + Scaled(trim.cx) &&
                           place.bottom - place.top >= needed.cy + Scaled(trim.cy);
      if (!hasRoom) cut.push_back(text);
    }
  }
  return cut;
}

}  // namespace gantry::test
