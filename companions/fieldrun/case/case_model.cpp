#include "fieldrun/case/case_model.h"

#include <algorithm>

#include <fmt/format.h>

namespace gantry::fieldrun {

namespace {

std::string TextOf(const std::string& file, const std::vector<Finding>& findings) {
  std::string text;
  for (const Finding& finding : findings) {
    text += (text.empty() ? "" : "\n") + finding.In(file);
  }
  return text;
}

}  // namespace

std::string Finding::In(const std::string& file) const {
  return fmt::format("{}:{}: {}{}", file, std::max(line, 1), isError ? "" : "warning: ", reason);
}

CaseError::CaseError(const std::string& file, int line, const std::string& reason)
    : CaseError(file, {{line, reason}}) {}

CaseError::CaseError(const std::string& file, const std::vector<Finding>& findings)
    : runtime_error(TextOf(file, findings)) {}

int Located::LineOf(const std::string& key) const {
  const auto found = keyLines.find(key);
  return found == keyLines.end() ? line : found->second;
}

const TubingSpec* CaseModel::TubingOf(const WellSpec& well) const {
  const auto found = std::find_if(tubings.begin(), tubings.end(), [&](const TubingSpec& tubing) {
    return tubing.name == well.tubing;
  });
  return found == tubings.end() ? nullptr : &*found;
}

double CaseModel::ManifoldPressureOf(const WellSpec& well) const {
  return well.manifoldPressure.value_or(network.manifoldPressure.value_or(0));
}

void CaseModel::Fail(int line, const std::string& reason) const {
  throw CaseError(file, line, reason);
}

}  // namespace gantry::fieldrun
