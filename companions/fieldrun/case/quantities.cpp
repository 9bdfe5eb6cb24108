#include "fieldrun/case/quantities.h"

namespace gantry::fieldrun {

std::string Counted(size_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace gantry::fieldrun
