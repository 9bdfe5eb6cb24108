#include "platform/posix/user_folders.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace gantry::platform {

namespace {

std::optional<std::string> AbsoluteFolder(const char* variable) {
  const char* value = std::getenv(variable);
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return value;
}

/// Makes the folder, or takes one that is there, if it is this user's alone.
bool IsOwnFolder(const std::string& path) {
  if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return false;
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & 077) == 0;
}

}  // namespace

std::optional<std::string> ConfigFolder() {
  auto base = AbsoluteFolder("XDG_CONFIG_HOME");
  if (!base) {
    const auto home = AbsoluteFolder("HOME");
    if (!home) return std::nullopt;
    base = *home + "/.config";
  }
  const std::string folder = *base + "/gantry";
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, error)) return std::nullopt;
  return folder;
}

std::optional<std::string> RuntimeFolder() {
  if (const auto base = AbsoluteFolder("XDG_RUNTIME_DIR")) {
    const std::string folder = *base + "/gantry";
    if (IsOwnFolder(folder)) return folder;
  }
  std::error_code error;
  const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
  if (error) return std::nullopt;
  const std::string folder = (temporary / ("gantry-" + std::to_string(::geteuid()))).string();
  if (!IsOwnFolder(folder)) return std::nullopt;
  return folder;
}

}  // namespace gantry::platform
