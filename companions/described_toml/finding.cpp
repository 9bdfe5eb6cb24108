#include "described_toml/finding.h"

#include <algorithm>

#include <fmt/format.h>

namespace gantry::toml_reader {
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

FileError::FileError(const std::string& file, int line, const std::string& reason)
    : FileError(file, std::vector{Finding{line, reason}}) {}

FileError::FileError(const std::string& file, std::vector<Finding> findings)
    : runtime_error(TextOf(file, findings)), Findings(std::move(findings)) {}

}  // namespace gantry::toml_reader
