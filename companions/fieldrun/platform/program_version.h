#pragma once

#include <string>

namespace gantry::fieldrun {

/// What a program says to `--version`: its first line, or an empty text. Only for a program of
/// which it is known that it answers and ends; waits until it has.
std::string AskForVersion(const std::string& program);

}  // namespace gantry::fieldrun
