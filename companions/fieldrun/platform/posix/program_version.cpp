#include "fieldrun/platform/program_version.h"

#include <array>
#include <cstdio>

namespace gantry::fieldrun {

std::string AskForVersion(const std::string& program) {
  if (program.find('\'') != std::string::npos) return "";  // no shell would take it as it stands
  std::FILE* const answer = ::popen(("'" + program + "' --version 2>&1 </dev/null").c_str(), "re");
  if (answer == nullptr) return "";
  std::array<char, 256> line{};
  const bool hasSpoken = std::fgets(line.data(), line.size(), answer) != nullptr;
  const bool isSound = ::pclose(answer) == 0 && hasSpoken;
  std::string text = isSound ? line.data() : "";
  while (text.ends_with('\n') || text.ends_with('\r')) text.pop_back();
  return text;
}

}  // namespace gantry::fieldrun
