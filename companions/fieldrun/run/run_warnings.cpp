#include "fieldrun/run/run_warnings.h"

#include <fmt/format.h>

namespace gantry::fieldrun {

std::string ToText(const RunWarning& warning) {
  const std::string_view separator = warning.well.empty() ? "" : ", ";
  return fmt::format("{}{}{}: {}", warning.well, separator, ToText(warning.date), warning.text);
}

bool RunWarnings::Add(const RunWarning& warning) {
  if (!known_.emplace(warning.topic, warning.well).second) return false;
  all_.push_back(warning);
  return true;
}

}  // namespace gantry::fieldrun
