#pragma once

#include <cstdint>
#include <vector>

#include "toolkit/dialog_template.h"

namespace gantry::platform {

/// A template in the form in which the system takes one from memory, which begins at a whole double
/// word like all that is allocated.
std::vector<uint16_t> InMemoryTemplate(const DialogTemplate& shape);

}  // namespace gantry::platform
