#include "platform/posix/user_folders.h"

#include <cstdlib>
#include <filesystem>

namespace gantry::platform {

namespace {

std::optional<std::string> AbsoluteFolder(const char* variable) {
  const char* value = std::getenv(variable);
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return value;
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

}  // namespace gantry::platform
