#include "runfactory/case_location.h"

#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::cluster {
namespace {

namespace fs = std::filesystem;

class OpenCaseTest : public ::testing::Test {
 protected:
  OpenCaseTest() {
    for (const char* file : {"fields/north/NORTH.afi", "fields/north/notes.txt",
                             "special/NORTH.afi", "secret/NORTH.afi"}) {
      folder.Write(file, "");
    }
    fs::create_directory_symlink(folder / "secret", folder / "fields/door");
    fs::create_symlink(folder / "secret/NORTH.afi", folder / "fields/north/LINKED.afi");
    fs::create_directory(folder / "fields/north/FOLDER.afi");
  }

  std::string Path(const std::string& below) const { return (folder / below).string(); }

  /// Where a case was found, or why not.
  std::string Find(const std::string& directory, const std::string& name) const {
    const std::vector<PathMap> maps = {{"C:\\Fields\\", Path("fields")},
                                       {"C:\\Fields\\North\\special", Path("special")},
                                       {"/net/fields", Path("fields") + "/"}};
    try {
      return OpenCase(maps, {Path("fields")}, directory, name).path;
    } catch (const CaseRefused& refusal) {
      return refusal.what();
    }
  }

  test::TestFolder folder;
};

TEST_F(OpenCaseTest, FindsWhatIsServedAndNothingElse) {
  std::istringstream lines(test::TestFolder::Read(CASE_LOCATION_CASES));
  for (std::string line; std::getline(lines, line);) {
    for (size_t at = 0; (at = line.find("{}")) != std::string::npos;) {
      line.replace(at, 2, folder.Path().string());
    }
    const size_t name = line.find(" | "), outcome = line.find(" => ");
    if (outcome == std::string::npos) continue;
    EXPECT_EQ(Find(line.substr(0, name), line.substr(name + 3, outcome - name - 3)),
              line.substr(outcome + 4));
  }
  EXPECT_TRUE(Find(Path("fields/north"), std::string(300, 'n')).ends_with("n'")) << "too long";
}

TEST_F(OpenCaseTest, HoldsTheDirectoryWhateverBecomesOfItsPath) {
  const CaseLocation location = OpenCase({}, {Path("fields")}, Path("fields/north"), "NORTH");
  fs::rename(folder / "fields/north", folder / "fields/moved");
  fs::create_directory_symlink(folder / "secret", folder / "fields/north");
  EXPECT_TRUE(
      fs::exists("/proc/self/fd/" + std::to_string(location.directory.Number()) + "/notes.txt"));
}

}  // namespace
}  // namespace gantry::cluster
