#pragma once

#include <string>

namespace gantry::fieldrun {

class ModuleApi;

/// Why the module can't open its dialogs, fit for the user; empty when it can. The module itself
/// doesn't tell that from a dialog that was cancelled.
std::string DialogFault(const ModuleApi& api);

}  // namespace gantry::fieldrun
