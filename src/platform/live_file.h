#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace gantry::platform {

/// Puts a file into the place of the one of that name, which is whole at every moment, whoever is
/// killed meanwhile: for what is written anew all the time, since it doesn't wait for the disk as
/// `ReplacementFile` does. After a failure the old file is there as it was.
std::error_code ReplaceLiveFile(const std::filesystem::path& path, std::string_view content);

}  // namespace gantry::platform
