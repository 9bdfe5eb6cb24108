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

TEST_F(OpenCaseTest, ServesNothingElse) {
  const std::string nowhere = ": it lies under no directory that is served here";
  for (const std::string& directory :
       {std::string(), std::string("/"), std::string("/net/fieldsnorth/"),
        std::string("/NET/fields/north"), Path("secret"), Path("fields") + "2",
        std::string("\\\\server\\share\\"), std::string("north/")}) {
    EXPECT_EQ(Find(directory),
              "The run factory can't open the case directory " + directory + nowhere);
  }
}

TEST_F(OpenCaseTest, IsNotLedOutOfItsRoots) {
  const std::string root = Path("fields");
  EXPECT_NE(Find(root + "/../secret/").find("\"..\" isn't allowed"), std::string::npos);
  EXPECT_NE(Find("C:\\Fields\\..\\secret\\").find("\"..\" isn't allowed"), std::string::npos);
  EXPECT_NE(Find(root + "/door/").find("door is no plain directory"), std::string::npos);
  EXPECT_NE(Find(root + "/north/NORTH.afi/").find("is no plain directory"), std::string::npos);
  EXPECT_EQ(Find(root + "/north", "LINKED"), "The run factory follows no link: LINKED.afi");
}

TEST_F(OpenCaseTest, TakesOnlyNamesOfFilesThatAreThere) {
  const std::string root = Path("fields/north");
  for (const std::string& name : {std::string(), std::string("../NORTH"), std::string("a\\b"),
                                  std::string("-x"), std::string(".."), std::string(300, 'n')}) {
    EXPECT_EQ(Find(root, name), "The run factory takes no case of the name '" + name + "'");
  }
  for (const char* name : {"SOUTH", "NORT", "FOLDER"}) {
    EXPECT_EQ(Find(root, name),
              "The run factory finds no case '" + std::string(name) + "' in " + root);
  }
}

TEST_F(OpenCaseTest, HoldsTheDirectoryWhateverBecomesOfItsPath) {
  const CaseLocation location = OpenCase({}, {Path("fields")}, Path("fields/north"), "NORTH");
  fs::rename(folder / "fields/north", folder / "fields/moved");
  fs::create_directory_symlink(folder / "secret", folder / "fields/north");
  EXPECT_TRUE(
      fs::exists("/proc/self/fd/" + std::to_string(location.directory.Get()) + "/notes.txt"));
}

}  // namespace
}  // namespace gantry::cluster
