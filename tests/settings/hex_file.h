#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace gantry::test {

/// The bytes of a file *.hex as a version has them, or filled with what stands for those of later
/// versions. The files tell what their lines are.
inline std::string BytesOf(const std::string& name, int version, bool isFilled = false) {
  std::ifstream lines(GANTRY_SETTINGS_FILES "/" + name);
  std::string bytes;
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    int since = 0;
    words >> since;
    bool isTaken = since <= version;
    for (std::string byte; words >> byte;) {
      if (byte == "|") isTaken = isFilled && since > version;
      if (byte != "|" && isTaken) bytes += static_cast<char>(std::stoi(byte, nullptr, 16));
    }
  }
  return bytes;
}

}  // namespace gantry::test
