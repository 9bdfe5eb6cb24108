#include "support/test_folder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace gantry::test {

namespace fs = std::filesystem;

TestFolder::TestFolder() {
  std::string pattern = (fs::temp_directory_path() / "gantry-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no test folder");
  path_ = pattern;
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_RUNTIME_DIR"}) {
    const fs::path folder = path_ / variable;
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::owner_all);
    ::setenv(variable, folder.c_str(), 1);
  }
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

fs::path TestFolder::Write(const std::string& name, const std::string& content) const {
  const fs::path file = path_ / name;
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
