#include "fieldrun/results/table_rows.h"

#include <charconv>

namespace gantry::fieldrun {
uint64_t LengthOfSteps(std::string_view table, size_t steps) {
  size_t length = 0;
  for (size_t end = table.find('\n'); end != table.npos; end = table.find('\n', length)) {
    size_t step = 0;
    const auto read = std::from_chars(table.data() + length, table.data() + end, step);
    const bool isHeading = length == 0;
    if (!isHeading && (read.ec != std::errc() || step > steps)) break;
    length = end + 1;
  }
  return length;
}

}  // namespace gantry::fieldrun
