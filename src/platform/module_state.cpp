#include "platform/module_state.h"

namespace gantry::platform {

namespace {

// No framework here keeps a state for each module, so only the nesting is left to keep.
thread_local int depth = 0;

}  // namespace

ModuleStateScope::ModuleStateScope() { ++depth; }

ModuleStateScope::~ModuleStateScope() { --depth; }

int ModuleStateScope::Depth() { return depth; }

}  // namespace gantry::platform
