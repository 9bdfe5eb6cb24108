#pragma once

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "support/play.h"

namespace gantry::test {

using Columns = Texts;
/// What comes of a case: as many columns as there are of it, in the place of the case's last ones.
using Kinds = std::map<std::string, Columns (*)(const Columns& given)>;

/// "<TEXT*TIMES>" written out.
inline std::string WrittenOut(std::string text) {
  static const std::regex kRepeated("<([^<>*]+)\\*(\\d+)>");
  for (std::smatch found; std::regex_search(text, found, kRepeated);) {
    std::string all;
    for (int i = std::stoi(found[2]); i > 0; --i) all += found[1];
    text = found.prefix().str() + all + found.suffix().str();
  }
  return text;
}

/// Checks a file of cases, one a line: its kind, and behind that what is given and what comes of
/// it, between bars with a blank on both sides; (none) is no text. Other lines are remarks.
inline void ExpectCases(const std::string& file, const Kinds& kinds) {
  std::ifstream lines(file);
  std::set<std::string> seen;
  for (std::string line; std::getline(lines, line);) {
    const size_t blank = line.find(' ');
    const auto kind = kinds.find(line.substr(0, blank));
    if (kind == kinds.end()) continue;
    Columns columns = Split(line.substr(blank + 1), " | ");
    for (std::string& column : columns) column = column == "(none)" ? "" : WrittenOut(column);
    const Columns outcome = kind->second(columns);
    const auto expected = columns.end() - static_cast<ptrdiff_t>(outcome.size());
    EXPECT_EQ(outcome, Columns(expected, columns.end())) << line;
    seen.insert(kind->first);
  }
  EXPECT_EQ(seen.size(), kinds.size()) << "kinds without a case in " << file;
}

}  // namespace gantry::test
