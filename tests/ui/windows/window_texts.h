#pragma once

#include <string>
#include <vector>

#include "platform/windows/win32.h"

namespace gantry::test {

std::string WindowText(HWND window);

/// The controls of a dialog whose texts have less room than they need, in the font that they are
/// shown in, and those that cover another or reach beyond the dialog.
std::vector<std::string> LayoutFaults(HWND dialog);

}  // namespace gantry::test
