#pragma once

#include <cstdint>
#include <string_view>

namespace gantry::fieldrun {

/// The bytes of a table of results up to the last whole row of the first `steps` steps, the heading
/// included. A row's first field is its step's number, from 1, and 0 for what came ahead of the
/// first; texts in a row hold no line ends.
uint64_t LengthOfSteps(std::string_view table, size_t steps);

}  // namespace gantry::fieldrun
