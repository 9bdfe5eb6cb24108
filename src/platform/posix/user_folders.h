#pragma once

#include <optional>
#include <string>

namespace gantry::platform {

/// `$XDG_CONFIG_HOME/gantry` (`~/.config/gantry` when that is unset or not absolute), made when it
/// is missing. None when there is no such place.
std::optional<std::string> ConfigFolder();

/// The folder for what lives as long as its process: `$XDG_RUNTIME_DIR/gantry`, else a folder of
/// the user's own under the temporary directory. Nobody else can enter it; one that belongs to
/// another user, or is open to others, is refused.
std::optional<std::string> RuntimeFolder();

}  // namespace gantry::platform
