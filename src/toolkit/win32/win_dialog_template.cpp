#include "toolkit/win32/win_dialog_template.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/windows/win32.h"
//
#include <commctrl.h>

namespace gantry::platform {

namespace {

constexpr int kDropHeight = 100;  ///< of a drop list with its list open, in dialog units

/// How a kind of control is made.
struct ControlClass {
  ControlKind kind;
  const char* name;
  DWORD style;
  DWORD extendedStyle = 0;
};

constexpr ControlClass kClasses[] = {
    {ControlKind::kGroup, "Button", BS_GROUPBOX},
    {ControlKind::kLabel, "Static", SS_NOTIFY | SS_NOPREFIX},
    {ControlKind::kEdit, "Edit", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    {ControlKind::kButton, "Button", WS_TABSTOP | BS_PUSHBUTTON},
    {ControlKind::kCheckBox, "Button", WS_TABSTOP | BS_AUTOCHECKBOX},
    {ControlKind::kDropList, "ComboBox", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST},
    {ControlKind::kListBox, "ListBox",
     WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_EXTENDEDSEL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
     WS_EX_CLIENTEDGE},
    {ControlKind::kListView, WC_LISTVIEWA, WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS,
     WS_EX_CLIENTEDGE},
    {ControlKind::kTree, WC_TREEVIEWA,
     WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
     WS_EX_CLIENTEDGE},
};

/// What the system calls the styles of a row; a control of each kind has but its own.
constexpr std::pair<ControlStyle, DWORD> kStyles[] = {{kDefaultButton, BS_DEFPUSHBUTTON},
                                                      {kDigitsOnly, ES_NUMBER},
                                                      {kPathLabel, SS_PATHELLIPSIS},
                                                      {kRightLabel, SS_RIGHT}};

ControlClass ClassOf(const ControlRow& row) {
  ControlClass made = *std::ranges::find(kClasses, row.kind, &ControlClass::kind);
  for (const auto& [style, bits] : kStyles) {
    if ((row.style & style) != 0) made.style |= bits;
  }
  return made;
}

/// The words of a template, one after the other.
class TemplateWriter {
 public:
  void Word(uint32_t value) { words_.push_back(static_cast<uint16_t>(value & 0xFFFF)); }
  void Number(uint32_t value) {
    Word(value);
    Word(value >> 16);
  }
  void Text(std::string_view text) {
    for (const char c : text) Word(static_cast<unsigned char>(c));
    Word(0);
  }
  void Place(const DialogPlace& place) {
    for (const int value : {place.left, place.top, place.width, place.height}) {
      Word(static_cast<uint32_t>(value));
    }
  }
  void Align() {
    if (words_.size() % 2 != 0) Word(0);
  }
  std::vector<uint16_t> Take() { return std::move(words_); }

 private:
  std::vector<uint16_t> words_;
};

void WriteDialog(TemplateWriter& out, const DialogTemplate& shape) {
  constexpr uint32_t kVersion = 1;
  constexpr uint32_t kExtended = 0xFFFF;
  constexpr uint32_t kPointSize = 8;
  const DWORD frame = shape.isResizable ? WS_THICKFRAME | WS_MAXIMIZEBOX : DS_MODALFRAME;
  out.Word(kVersion);
  out.Word(kExtended);
  out.Number(0);
  out.Number(0);
  out.Number(DS_SETFONT | DS_FIXEDSYS | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU | frame);
  out.Word(static_cast<uint32_t>(shape.controls.size()));
  out.Place({0, 0, shape.width, shape.height});
  out.Word(0);  // no menu
  out.Word(0);  // the class of all dialogs
  out.Text(shape.caption);
  out.Word(kPointSize);
  out.Word(FW_NORMAL);
  out.Word(DEFAULT_CHARSET << 8);
  out.Text("MS Shell Dlg");
}

void WriteControl(TemplateWriter& out, const ControlRow& row) {
  const ControlClass made = ClassOf(row);
  DialogPlace place = row.place;
  if (row.kind == ControlKind::kDropList) place.height = kDropHeight;
  out.Align();
  out.Number(0);
  out.Number(made.extendedStyle);
  out.Number(WS_CHILD | WS_VISIBLE | made.style);
  out.Place(place);
  out.Number(static_cast<uint32_t>(row.id));
  out.Text(made.name);
  out.Text(row.caption);
  out.Word(0);
}

}  // namespace

std::vector<uint16_t> InMemoryTemplate(const DialogTemplate& shape) {
  TemplateWriter out;
  WriteDialog(out, shape);
  for (const ControlRow& row : shape.controls) WriteControl(out, row);
  return out.Take();
}

}  // namespace gantry::platform
