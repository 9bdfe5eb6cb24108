#pragma once

#include <filesystem>
#include <string>

namespace gantry::platform {

/// The path of a file whose name is in the code page of this process, as the system's 8-bit calls
/// take it, and the other way round. A path made from a text in any other way holds what the C++
/// library makes of it, which outside ASCII is another file.
std::filesystem::path PathOf(const std::string& name);
std::string NameOf(const std::filesystem::path& path);

/// The name of a file as case data keep it, in Windows-1252, and the other way round. Where file
/// names are bytes, and in a process with a code page of one byte to the character, a name is kept
/// as it stands; so is one that Windows-1252 can't hold.
std::string StoredFileName(const std::string& name);
std::string FileNameOfStored(const std::string& stored);

}  // namespace gantry::platform
