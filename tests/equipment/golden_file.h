#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace gantry::test {

/// As text, so that the platform's line ends are one character.
inline std::string TextOf(const std::filesystem::path& file) {
  return (std::ostringstream() << std::ifstream(file).rdbuf()).str();
}
inline std::string Golden(const std::string& name) {
  return TextOf(std::filesystem::path(GANTRY_EQUIPMENT_GOLDEN) / name);
}

}  // namespace gantry::test
