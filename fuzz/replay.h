#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace gantry::fuzz {

/// Plays each file of corpus/NAME, and of NAME below the folder that GANTRY_GROWN_CORPUS names.
inline void ReplayAll(const std::string& name, void (*play)(std::string_view)) {
  namespace fs = std::filesystem;
  const char* grown = std::getenv("GANTRY_GROWN_CORPUS");
  for (const fs::path& corpus :
       {fs::path(GANTRY_CORPUS), fs::path(grown == nullptr ? "" : grown)}) {
    if (!fs::is_directory(corpus / name)) continue;
    for (const fs::directory_entry& entry : fs::directory_iterator(corpus / name)) {
      SCOPED_TRACE(entry.path().string());
      std::ifstream file(entry.path(), std::ios::binary);
      play(std::string(std::istreambuf_iterator<char>(file), {}));
    }
  }
}

}  // namespace gantry::fuzz
