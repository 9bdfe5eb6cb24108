#include "support/test_folder.h"

#include <fstream>
#include <random>
#include <sstream>

#include "support/isolation.h"

namespace gantry::test {

namespace fs = std::filesystem;

TestFolder::TestFolder() {
  std::random_device number;
  do {
    path_ = fs::temp_directory_path() / ("gantry-test-" + std::to_string(number()));
  } while (!fs::create_directory(path_));
  IsolateSettings(path_);
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

fs::path TestFolder::Write(const std::string& name, const std::string& content) const {
  const fs::path file = (path_ / name).make_preferred();
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

std::string TestFolder::Read(const fs::path& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return content.str();
}

}  // namespace gantry::test
