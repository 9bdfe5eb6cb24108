#include "fieldrun/driver/dialog_parts.h"

namespace gantry::fieldrun {

std::string DialogFault(const ModuleApi& /*api*/) { return {}; }  // they are in the module itself
std::string DialogTrialFault(const ModuleApi& /*api*/) { return {}; }

}  // namespace gantry::fieldrun
