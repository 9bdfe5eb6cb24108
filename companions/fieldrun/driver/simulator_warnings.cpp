#include "fieldrun/driver/simulator_warnings.h"

#include <fstream>
#include <vector>

namespace gantry::fieldrun {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> LinesIn(const fs::path& results) {
  std::vector<std::string> lines;
  std::error_code none;
  for (const auto& folder : fs::directory_iterator(results, none)) {
    if (!folder.is_directory(none)) continue;
    for (const auto& file : fs::directory_iterator(folder.path(), none)) {
      if (file.path().extension() != ".warnings") continue;
      std::ifstream in(file.path());
      for (std::string line; std::getline(in, line);) lines.push_back(line);
    }
  }
  return lines;
}

}  // namespace

void SimulatorWarnings::TellNew(const std::function<void(const std::string&)>& tell) {
  const std::vector<std::string> lines = LinesIn(results_);
  for (; told_ < lines.size(); ++told_) tell(lines[told_]);
}

}  // namespace gantry::fieldrun
