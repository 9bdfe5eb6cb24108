#include "toolkit/win32/win_dialog_template.h"

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
  const char* name;
  DWORD style;
  DWORD extendedStyle;
};

ControlClass ClassOf(const ControlRow& row) {
  const bool isDefault = (row.style & kDefaultButton) != 0;
  const bool isDigits = (row.style & kDigitsOnly) != 0;
  switch (row.kind) {
    case ControlKind::kGroup:
      return {"Button", BS_GROUPBOX, 0};
    case ControlKind::kLabel:
      return {"Static",
              SS_NOTIFY | SS_NOPREFIX |
                  static_cast<DWORD>((row.style & kPathLabel) != 0    ? SS_PATHELLIPSIS
                                     : (row.style & kRightLabel) != 0 ? SS_RIGHT
                                                                      : SS_LEFT),
              0};
    case ControlKind::kEdit:
      return {"Edit", WS_TABSTOP | ES_AUTOHSCROLL | static_cast<DWORD>(isDigits ? ES_NUMBER : 0),
              WS_EX_CLIENTEDGE};
    case ControlKind::kButton:
      return {"Button",
              WS_TABSTOP | static_cast<DWORD>(isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), 0};
    case ControlKind::kCheckBox:
      return {"Button", WS_TABSTOP | BS_AUTOCHECKBOX, 0};
    case ControlKind::kDropList:
      return {"ComboBox", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, 0};
    case ControlKind::kListBox:
      return {"ListBox",
              WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_EXTENDEDSEL | LBS_NOTIFY |
                  LBS_NOINTEGRALHEIGHT,
              WS_EX_CLIENTEDGE};
    case ControlKind::kListView:
      return {WC_LISTVIEWA, WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE};
    case ControlKind::kTree:
      return {WC_TREEVIEWA,
              WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_SHOWSELALWAYS,
              WS_EX_CLIENTEDGE};
  }
  return {"Static", 0, 0};
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
