#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gantry::platform {

/// Splits a command line at blanks and tabs outside double quotes. The quotes themselves fall away;
/// a pair of them with nothing between is an empty argument, and one that is never closed runs to
/// the end. Nothing else has a meaning.
std::vector<std::string> SplitCommandLine(std::string_view commandLine);

}  // namespace gantry::platform
