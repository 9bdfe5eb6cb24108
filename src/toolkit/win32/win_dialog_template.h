#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

/// A template in the form in which the system takes one from memory.
std::vector<uint32_t> InMemoryTemplate(const DialogTemplate& shape);

}  // namespace gantry::platform
