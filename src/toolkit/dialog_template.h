#pragma once

#include <cstdint>
#include <span>

namespace gantry::platform {

enum class ControlKind {
  kGroup,
  kLabel,
  kEdit,
  kButton,
  kCheckBox,
  kDropList,
  kListBox,   ///< several rows can be selected
  kListView,  ///< rows of columns with a picture each; several rows can be selected
  kTree       ///< two levels, with a check box and a picture for each item
};

/// Bits of `ControlRow::style`.
enum ControlStyle : uint32_t {
  kPlainStyle = 0,
  kDefaultButton = 1,  ///< pressed by Enter
  kDigitsOnly = 2,     ///< takes no other key than digits
  kPathLabel = 4,      ///< a long text is shortened in its middle
  kRightLabel = 8      ///< the text ends at the control's right edge
};

/// Left, top, width and height in dialog units: a quarter of the font's mean width, an eighth of
/// its height.
struct DialogPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

inline constexpr int kNoControl = -1;  ///< of a control that is never addressed

struct ControlRow {
  ControlKind kind = {};
  int id = kNoControl;
  const char* caption = "";
  DialogPlace place;
  uint32_t style = kPlainStyle;
  const char* toolTip = nullptr;
};

/// What a dialog is made of. The order of the rows is the order of the tab key.
struct DialogTemplate {
  int id = 0;
  const char* caption = "";
  int width = 0;  ///< of the client area, in dialog units
  int height = 0;
  std::span<const ControlRow> controls;
  bool isResizable = false;
};

/// How long a tool tip stays.
inline constexpr int kToolTipMilliseconds = 15000;

/// The pictures that come with the module.
enum Picture : int { kSimulatorPicture = 1001, kWellPicture = 1048, kVariablePicture = 1051 };

}  // namespace gantry::platform
