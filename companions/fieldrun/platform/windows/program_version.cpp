#include "fieldrun/platform/program_version.h"

#include <array>
#include <cstdio>

namespace gantry::fieldrun {

std::string AskForVersion(const std::string& program) {
  std::FILE* const answer = ::_popen(("\"\"" + program + "\" --version 2>&1 <NUL\"").c_str(), "rt");
  if (answer == nullptr) return "";
  std::array<char, 256> line{};
  const bool hasSpoken = std::fgets(line.data(), line.size(), answer) != nullptr;
  const bool isSound = ::_pclose(answer) == 0 && hasSpoken;
  std::string text = isSound ? line.data() : "";
  while (text.ends_with('\n') || text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace gantry::fieldrun
