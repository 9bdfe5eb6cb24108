#pragma once

#include <string>
#include <string_view>

namespace gantry::platform {

/// Compares as the C library's comparison without regard to case does, in the C locale.
bool EqualNoCase(std::string_view a, std::string_view b);

/// The text, which is in the code page of the wire and the case data (Windows-1252, whatever that
/// of this process), in UTF-8.
std::string CodePageToUtf8(std::string_view text);

/// The other way round. What the code page lacks, and what isn't UTF-8, becomes another character,
/// so that only a text that comes back the same has been kept.
std::string Utf8ToCodePage(std::string_view text);

/// Whether the bytes of a text can be characters in UTF-8.
bool IsUtf8(std::string_view text);

}  // namespace gantry::platform
