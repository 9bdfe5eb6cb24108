#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace gantry {

/// One list among a client operation's arguments, which are numbered from 1.
struct ListArgument {
  int number;
  size_t size;
};

[[noreturn]] inline void FailSizes(std::string_view operation, ListArgument first,
                                   ListArgument second) {
  throw std::invalid_argument(
      "IntersectClient::" + std::string(operation) + ": inconsistent size of arguments " +
      std::to_string(first.number) + " and " + std::to_string(second.number) + " (" +
      std::to_string(first.size) + " vs " + std::to_string(second.size) + ")");
}

/// Throws invalid_argument when two lists that must be of equal length aren't.
inline void CheckSizes(std::string_view operation, ListArgument first, ListArgument second) {
  if (first.size != second.size) FailSizes(operation, first, second);
}

}  // namespace gantry
