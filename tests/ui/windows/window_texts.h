#pragma once

#include <string>
#include <vector>

#include "platform/windows/win32.h"

namespace gantry::test {

/// The texts in a dialog's controls that have less room than they need, in the font that they are
/// shown in.
std::vector<std::string> CutOffTexts(HWND dialog);

/// The controls that cover another, or that reach beyond the dialog.
std::vector<std::string> OverlappingControls(HWND dialog);

}  // namespace gantry::test
