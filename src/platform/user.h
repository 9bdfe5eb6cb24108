#pragma once

#include <optional>
#include <string>

namespace gantry::platform {

/// The log-in name of the user whom this process acts for, as the system spells it.
std::optional<std::string> LogInName();

}  // namespace gantry::platform
