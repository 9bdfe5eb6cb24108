#pragma once

#include <string>
#include <string_view>

namespace gantry {

/// Tells whether a text is still the one that it was: FNV-1a of 64 bits (Fowler, Noll and Vo), as
/// 16 hexadecimal digits. No defence against who wants two texts to have the same.
std::string Checksum(std::string_view text);

}  // namespace gantry
