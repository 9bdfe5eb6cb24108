#include "fieldrun/platform/scratch_folder.h"

#include <random>

#include <fmt/format.h>

namespace gantry::fieldrun {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  std::random_device number;
  do {
    path_ = fs::temp_directory_path() / fmt::format("fieldrun-{:x}", number());
  } while (!fs::create_directory(path_));
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace gantry::fieldrun
