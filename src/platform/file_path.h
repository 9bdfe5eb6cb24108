#pragma once

#include <filesystem>
#include <string>

namespace gantry::platform {

/// The path of a file whose name is in the code page of this process, as the system's 8-bit calls
/// take it, and the other way round. A path made from a text in any other way holds what the C++
/// library makes of it, which outside ASCII is another file.
std::filesystem::path PathOf(const std::string& name);
std::string NameOf(const std::filesystem::path& path);

}  // namespace gantry::platform
