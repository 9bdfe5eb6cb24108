#pragma once

#include <string>
#include <string_view>

namespace gantry::platform {

/// Between 8-bit texts of a code page (CP_ACP, CP_UTF8) and the system's own 16-bit ones.
std::wstring Widen(unsigned codePage, std::string_view text);
std::string Narrow(unsigned codePage, std::wstring_view text);

}  // namespace gantry::platform
