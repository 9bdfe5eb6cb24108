#include "platform/live_file.h"

#include <cerrno>
#include <fstream>

namespace gantry::platform {

std::error_code ReplaceLiveFile(const std::filesystem::path& path, std::string_view content) {
  std::filesystem::path aside = path;
  aside += ".new";
  errno = 0;
  std::ofstream file(aside, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  std::error_code error;
  if (!file) {
    error = std::error_code(errno == 0 ? EIO : errno, std::generic_category());
  } else {
    std::filesystem::rename(aside, path, error);
  }
  std::error_code ignored;
  if (error) std::filesystem::remove(aside, ignored);
  return error;
}

}  // namespace gantry::platform
