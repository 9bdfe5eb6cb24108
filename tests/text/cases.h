#pragma once

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gantry::test {

/// The cases of a kind in paths.cases, each as its columns.
inline std::vector<std::vector<std::string>> CasesOf(const std::string& kind) {
  std::vector<std::vector<std::string>> cases;
  std::ifstream lines(GANTRY_PATH_CASES);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(kind + " ")) continue;
    line.erase(0, kind.size() + 1);
    auto& columns = cases.emplace_back();
    for (size_t end = 0; end != std::string::npos; line.erase(0, end + 3)) {
      end = line.find(" | ");
      columns.push_back(line.substr(0, end) == "(none)" ? "" : line.substr(0, end));
      if (end == std::string::npos) break;
    }
  }
  EXPECT_FALSE(cases.empty()) << kind;
  return cases;
}

}  // namespace gantry::test
