#pragma once

#include <string>

namespace gantry::flowlink {

/// The last error in what flow has said, on one line; empty when there is none.
std::string LastErrorIn(const std::string& text);

}  // namespace gantry::flowlink
