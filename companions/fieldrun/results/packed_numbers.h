#pragma once

#include <span>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace gantry::fieldrun {

/// Numbers for a page's script, as short as they change little: rounded to `digits` decimal digits
/// of the largest, each as its difference from the one before in base-64 digits of six bits, of
/// which the least significant comes first: five bits and one that says whether more follow; the
/// lowest bit of the number is its sign (the variable-length quantities of source maps). A dot
/// stands for what isn't a number. With `lengths`, the numbers are rows of these lengths, and each
/// is told from the last one at its place in a row.
///
/// {"e": EXPONENT, "v": "..."}: a value is its whole number times ten to that power.
nlohmann::ordered_json Packed(std::span<const double> numbers, int digits,
                              std::span<const size_t> lengths = {});

}  // namespace gantry::fieldrun
