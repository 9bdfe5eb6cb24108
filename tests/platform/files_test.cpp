#include "platform/files.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using test::TestFolder;

class Files : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  size_t Count() const {
    const fs::directory_iterator entries(folder_.Path());
    return static_cast<size_t>(std::count_if(fs::begin(entries), fs::end(entries),
                                             [](const auto& e) { return !e.is_directory(); }));
  }

  TestFolder folder_;
};

TEST_F(Files, OnlyAFileCanBeOpenedForReading) {
  folder_.Write("file", "x");
  fs::create_directory(folder_ / "directory");
  EXPECT_TRUE(CanOpenForReading(Path("file")));
  for (const std::string& none : {Path("directory"), Path("missing"), std::string()}) {
    EXPECT_FALSE(CanOpenForReading(none)) << none;
    EXPECT_EQ(NativeFile::OpenForReading(none), nullptr) << none;
  }
  EXPECT_TRUE(FileExists(Path("directory")));
  EXPECT_FALSE(FileExists(Path("missing")));
  EXPECT_FALSE(FileExists(""));
}

TEST_F(Files, ACopyGoesOverWhatStandsThereAndAFailedOneLeavesIt) {
  folder_.Write("from", std::string(200000, '\0') + "end");
  folder_.Write("to", "old");
  fs::create_directory(folder_ / "directory");
  EXPECT_FALSE(CopyFileOver(Path("missing"), Path("to")));
  EXPECT_FALSE(CopyFileOver(Path("directory"), Path("to")));
  EXPECT_FALSE(CopyFileOver(Path("from"), Path("directory")));
  EXPECT_FALSE(CopyFileOver(Path("from"), (folder_ / "nowhere/to").string()));
  EXPECT_EQ(TestFolder::Read(Path("to")), "old");
  EXPECT_TRUE(CopyFileOver(Path("from"), Path("to")));
  EXPECT_EQ(TestFolder::Read(Path("to")), TestFolder::Read(Path("from")));
  EXPECT_EQ(Count(), 2U);
}

TEST_F(Files, AReplacementTakesItsNameOnlyWhenItIsCommitted) {
  folder_.Write("file", "old");
  {
    const auto dropped = ReplacementFile::Create(Path("file"));
    ASSERT_TRUE(dropped->File().Write("new", 3));
    EXPECT_EQ(TestFolder::Read(Path("file")), "old");
  }
  EXPECT_EQ(Count(), 1U);
  const auto first = ReplacementFile::Create(Path("file"));
  const auto second = ReplacementFile::Create(Path("file"));
  ASSERT_TRUE(first->File().Write("1", 1));
  ASSERT_TRUE(second->File().Write("2", 1));
  EXPECT_TRUE(second->Commit());
  EXPECT_TRUE(first->Commit());
  EXPECT_EQ(TestFolder::Read(Path("file")), "1");
  EXPECT_EQ(Count(), 1U);
  EXPECT_EQ(ReplacementFile::Create(folder_.Path().string()), nullptr);
}

// No process has the last number of all.
TEST_F(Files, AReplacementSweepsAwayWhatAKilledOneHasLeft) {
  const std::string left = "file.4294967292-";
  for (const char* number : {"1.new", "22.new"}) folder_.Write(left + number, "half");
  const std::vector<std::string> others = {
      "other" + left + "1.new", left + "1.newer", left + ".new",
      left + "x.new",           "file.new",       "file"};
  for (const std::string& other : others) folder_.Write(other, "other");
  const auto underWay = ReplacementFile::Create(Path("file"));
  const auto next = ReplacementFile::Create(Path("file"));
  EXPECT_EQ(Count(), others.size() + 2);
  for (const std::string& other : others) EXPECT_TRUE(fs::exists(folder_ / other)) << other;
  EXPECT_TRUE(underWay->Commit()) << "one that is being written is left alone";
}

}  // namespace
}  // namespace gantry::platform
