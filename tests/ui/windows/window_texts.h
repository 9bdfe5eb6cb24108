#pragma once

#include <string>
#include <vector>

#include "platform/windows/win32.h"

namespace gantry::test {

std::string WindowText(HWND window);

/// The texts in a dialog's controls that have less room than they need, in the font that they are
/// shown in.
std::vector<std::string> CutOffTexts(HWND dialog);

}  // namespace gantry::test
