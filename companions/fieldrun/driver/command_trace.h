#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gantry::fieldrun {

/// The name of a command as the trace and messages show it; empty for one without a name.
std::string_view CommandName(uint32_t command);

/// What the trace shows of the data of a command, before the call and after it.
std::string ArgumentsOf(uint32_t command, const void* data);
std::string OutcomeOf(uint32_t command, const void* data);

}  // namespace gantry::fieldrun
