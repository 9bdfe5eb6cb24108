#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gantry::platform {

/// A file that is written beside the one whose place it takes, as NAME.PROCESS-NUMBER.new.
struct AsideFile {
  std::string path;
  uint32_t process = 0;  ///< that has made it, on whichever machine
};

/// A name beside `path` that this process hasn't used yet.
std::string NewAsideName(const std::string& path, uint32_t process);

/// Those that stand beside `path`, each under way or left behind by a process that was killed.
std::vector<AsideFile> FindAsideFiles(const std::string& path);

}  // namespace gantry::platform
