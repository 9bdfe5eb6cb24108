#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

/// A picture at any size: rows from the top, a pixel as alpha, red, green and blue from the high
/// byte down, the colours not multiplied by alpha. Empty for an unknown picture or size.
std::vector<uint32_t> PaintPicture(Picture picture, int width, int height);

}  // namespace gantry::platform
