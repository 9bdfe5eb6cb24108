#pragma once

#include <string>

namespace gantry::fieldrun {

/// True for a file that holds bytes of its own: no folder, device or pipe. False also for a path
/// that leads nowhere, or can't be followed.
bool IsFile(const std::string& path);

/// The whole of a file that the user has named. Throws CaseError when there is none or it can't be
/// read.
std::string ReadInputFile(const std::string& path);

}  // namespace gantry::fieldrun
