#pragma once

#include <cstdint>

#include "toolkit/dialog_window.h"

namespace gantry {

/// Shows a topic of the host's help, kept in "Tessel.chm" beside the module. Topics 0 and 0x20000
/// are none; the bit 0x20000 of any other is no part of its number. Help that can't be shown gets a
/// message.
void ShowHelpTopic(platform::DialogWindow& window, uint32_t topic);

}  // namespace gantry
