#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gantry {

/// True for a text that is empty or made of blanks only.
bool IsBlank(const std::string& text);
/// What stands between any of the separators, without the pieces that are blank.
std::vector<std::string> SplitAt(std::string_view text, std::string_view separators);

}  // namespace gantry
