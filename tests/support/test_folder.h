#pragma once

#include <filesystem>
#include <string>

namespace gantry::test {

/// A new empty folder for one test, gone with the object. While it lives, the settings of this
/// process and of its children stand inside it, so that no test sees the user's.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const {
    return (path_ / name).make_preferred();
  }

  /// Writes a file below the folder and returns its path.
  std::filesystem::path Write(const std::string& name, const std::string& content) const;
  static std::string Read(const std::filesystem::path& file);

 private:
  std::filesystem::path path_;
};

}  // namespace gantry::test
