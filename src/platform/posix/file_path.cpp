#include "platform/file_path.h"

namespace gantry::platform {

std::filesystem::path PathOf(const std::string& name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

}  // namespace gantry::platform
