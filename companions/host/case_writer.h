#pragma once

#include <map>
#include <string>

namespace gantry::fieldrun {

/// The text of a case file with other values in its [simulator] section, each as TOML has it: a key
/// that is there keeps its line, another is added to the section. All else stays as it was written,
/// comments included.
std::string WithSimulatorKeys(const std::string& text,
                              const std::map<std::string, std::string>& values);

/// A text as a TOML value.
std::string TomlText(const std::string& text);

}  // namespace gantry::fieldrun
