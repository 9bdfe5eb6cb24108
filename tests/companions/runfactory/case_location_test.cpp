#include "runfactory/case_location.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::cluster {
namespace {

namespace fs = std::filesystem;

class OpenCaseTest : public ::testing::Test {
 protected:
  OpenCaseTest() {
    folder.Write("fields/north/NORTH.afi", "");
    folder.Write("fields/north/notes.txt", "");
    folder.Write("special/NORTH.afi", "");
    folder.Write("secret/NORTH.afi", "");
    fs::create_directory_symlink(folder / "secret", folder / "fields/door");
    fs::create_symlink(folder / "secret/NORTH.afi", folder / "fields/north/LINKED.afi");
    fs::create_directory(folder / "fields/north/FOLDER.afi");
  }

  std::string Path(const std::string& below) const { return (folder / below).string(); }

  /// Where a case was found, or why not.
  std::string Find(const std::string& directory, const std::string& name = "NORTH") const {
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

TEST_F(OpenCaseTest, FindsDirectoriesUnderMapsAndRoots) {
  const std::string north = Path("fields/north");
  EXPECT_EQ(Find("C:\\Fields\\north\\"), north);
  EXPECT_EQ(Find("c:/FIELDS/north"), north) << "Windows sees no case and takes both separators";
  EXPECT_EQ(Find("/net/fields//./north/"), north);
  EXPECT_EQ(Find(north + "/"), north);
  EXPECT_EQ(Find("C:\\Fields\\North\\Special\\"), Path("special")) << "the longest match counts";
}

TEST_F(OpenCaseTest, IsNotLedOutOfItsRoots) {
  using namespace std::string_literals;
  const std::string root = Path("fields");
  const std::string nowhere = ": it lies under no directory that is served here";
  for (const auto& directory : {""s, "/"s, "/net/fieldsnorth/"s, "/NET/fields/north"s,
                                Path("secret"), root + "2", "\\\\server\\share\\"s, "north/"s}) {
    EXPECT_TRUE(Find(directory).ends_with(" " + directory + nowhere)) << Find(directory);
  }
  for (const auto& directory : {root + "/../secret/", "C:\\Fields\\..\\secret\\"s}) {
    EXPECT_NE(Find(directory).find("\"..\" isn't allowed"), std::string::npos) << directory;
  }
  for (const auto& directory : {root + "/door/", root + "/north/NORTH.afi/"}) {
    EXPECT_TRUE(Find(directory).ends_with("is no plain directory")) << directory;
  }
}

TEST_F(OpenCaseTest, TakesOnlyNamesOfFilesThatAreThere) {
  const std::string root = Path("fields/north");
  EXPECT_EQ(Find(root, "LINKED"), "The run factory follows no link: LINKED.afi");
  for (const std::string& name : {std::string(), std::string("../NORTH"), std::string("a\\b"),
                                  std::string("-x"), std::string(".."), std::string(300, 'n')}) {
    EXPECT_EQ(Find(root, name), "The run factory takes no case of the name '" + name + "'");
  }
  for (const std::string name : {"SOUTH", "NORT", "FOLDER"}) {
    EXPECT_EQ(Find(root, name), "The run factory finds no case '" + name + "' in " + root);
  }
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
