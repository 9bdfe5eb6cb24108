#include "support/test_folder.h"

#include <fstream>
#include <random>
#include <sstream>
#include <vector>

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

// Not by `remove_all`: that of Windows never ends where a program that ends renames a file
// meanwhile.
TestFolder::~TestFolder() {
  std::error_code error;
  std::vector<fs::path> paths = {path_};
  fs::recursive_directory_iterator entry(path_, error);
  for (; !error && entry != end(entry); entry.increment(error)) paths.push_back(entry->path());
  for (; !paths.empty(); paths.pop_back()) fs::remove(paths.back(), error);
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
