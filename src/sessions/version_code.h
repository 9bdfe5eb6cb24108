#pragma once

#include <cstdint>
#include <string>

namespace gantry {

/// The version code of a simulator, worked out from the path of its executable: the first folder
/// or file name of the form 2017.2 or v2017a gives 20172 or 20171. Without one, a code that is
/// newer than any known. Folders end at a backslash, and at "/" where the system's own paths do.
int32_t VersionCodeFromPath(const std::string& path);

}  // namespace gantry
