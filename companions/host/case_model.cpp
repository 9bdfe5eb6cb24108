#include "host/case_model.h"

#include <fmt/format.h>

namespace gantry::fieldrun {

CaseError::CaseError(const std::string& file, int line, const std::string& reason)
    : runtime_error(line > 0 ? fmt::format("{}:{}: {}", file, line, reason)
                             : fmt::format("{}: {}", file, reason)) {}

int Located::LineOf(const std::string& key) const {
  const auto found = keyLines.find(key);
  return found == keyLines.end() ? line : found->second;
}

void CaseModel::Fail(int line, const std::string& reason) const {
  throw CaseError(file, line, reason);
}

}  // namespace gantry::fieldrun
