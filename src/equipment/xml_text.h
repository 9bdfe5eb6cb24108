#pragma once

#include <string>
#include <string_view>

namespace gantry {

/// The text with the five characters that XML keeps for itself replaced by their entities.
std::string EscapeXml(std::string_view text);

}  // namespace gantry
