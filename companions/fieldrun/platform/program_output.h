#pragma once

#include <string>
#include <vector>

namespace gantry::fieldrun {

/// What a program said on standard output, and its exit status: -1 when it couldn't be started or
/// didn't end by itself.
struct ProgramOutput {
  int status = -1;
  std::string text;
};

/// Runs a program to its end, with nothing to read. Arguments are passed as they stand.
ProgramOutput OutputOf(const std::string& program, const std::vector<std::string>& arguments);

}  // namespace gantry::fieldrun
