#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace gantry::fieldrun {

/// A row of what a verb prints: names and values, as a line for people or an object in JSON.
using PrintedValue = std::variant<std::string, int64_t, bool>;
using PrintedRow = std::vector<std::pair<std::string, PrintedValue>>;

/// A list of objects; texts that aren't UTF-8 have their bad bytes replaced.
std::string ToJson(const std::vector<PrintedRow>& rows);
/// One object.
std::string ToJson(const PrintedRow& row);

}  // namespace gantry::fieldrun
