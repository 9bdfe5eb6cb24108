#pragma once

#include <optional>
#include <string>

namespace gantry::platform {

/// `$XDG_CONFIG_HOME/gantry` (`~/.config/gantry` when that is unset or not absolute), made when it
/// is missing. None when there is no such place.
std::optional<std::string> ConfigFolder();

}  // namespace gantry::platform
