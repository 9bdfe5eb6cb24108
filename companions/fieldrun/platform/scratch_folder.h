#pragma once

#include <filesystem>

namespace gantry::fieldrun {

/// An empty folder of this process's own among the system's temporary ones, gone with the object.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::filesystem::path File(const char* name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace gantry::fieldrun
