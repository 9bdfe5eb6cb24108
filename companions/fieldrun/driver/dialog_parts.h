#pragma once

#include <string>

namespace gantry::fieldrun {

class ModuleApi;

/// Why the module can't open its dialogs, fit for the user; empty when it can. The module itself
/// doesn't tell that from a dialog that was cancelled.
std::string DialogFault(const ModuleApi& api);

/// Why a process with all its parts can't show a dialog on a display that is there; empty when it
/// can. What such a process says itself, like the name of a part of Qt, goes to standard error.
std::string DialogTrialFault(const ModuleApi& api);

}  // namespace gantry::fieldrun
