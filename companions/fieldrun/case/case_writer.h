#pragma once

#include <map>
#include <string>

#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

/// The text of a case file with other values in its [simulator] section, each as TOML has it: a key
/// that is there keeps its line, another is added to the section. All else stays as it was written,
/// comments included.
std::string WithSimulatorKeys(const std::string& text,
                              const std::map<std::string, std::string>& values);

/// The text that a case was read from, with another control mode for each of its producers, as TOML
/// has it. Throws CaseError for a well whose keys don't stand each on a line of its own.
std::string WithControl(const std::string& text, const CaseModel& caseModel,
                        const std::string& control);

/// A text as a TOML value.
std::string TomlText(const std::string& text);

}  // namespace gantry::fieldrun
