#pragma once

#include <string>
#include <string_view>

namespace gantry::platform {

/// Compares as the C library's comparison without regard to case does, in the C locale.
bool EqualNoCase(std::string_view a, std::string_view b);

/// The text, which is in the host's code page (Windows-1252), in UTF-8.
std::string CodePageToUtf8(std::string_view text);

}  // namespace gantry::platform
