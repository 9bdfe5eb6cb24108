#include "platform/file_path.h"

namespace gantry::platform {

std::filesystem::path PathOf(const std::string& name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

std::string StoredFileName(const std::string& name) { return name; }

std::string FileNameOfStored(const std::string& stored) { return stored; }

}  // namespace gantry::platform
