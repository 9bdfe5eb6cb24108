#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/posix/full_disk.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using test::TestFolder;

class Files : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  size_t Count() const {
    size_t count = 0;
    for (const auto& entry : fs::directory_iterator(folder_.Path())) {
      if (!entry.is_directory()) ++count;
    }
    return count;
  }

  TestFolder folder_;
};

TEST_F(Files, OnlyAFileCanBeOpenedForReadingAndNoPipeHoldsTheCallerUp) {
  folder_.Write("file", "x");
  fs::create_directory(folder_ / "directory");
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(CanOpenForReading(Path("file")));
  EXPECT_TRUE(CanOpenForReading(Path("pipe")));
  for (const char* none : {"directory", "missing"}) EXPECT_FALSE(CanOpenForReading(Path(none)));
  EXPECT_FALSE(CanOpenForReading(""));
  EXPECT_TRUE(FileExists(Path("directory")));
  EXPECT_FALSE(FileExists(Path("missing")));
  EXPECT_FALSE(FileExists(""));
  EXPECT_EQ(NativeFile::OpenForReading(Path("pipe")), nullptr);
  EXPECT_EQ(NativeFile::OpenForReading(Path("directory")), nullptr);
}

TEST_F(Files, ACopyHasTheWholeContentAndTheMode) {
  const std::string content = std::string(200000, '\0') + "end";
  fs::permissions(folder_.Write("from", content), fs::perms::owner_all);
  folder_.Write("to", "old and longer or not");
  EXPECT_TRUE(CopyFileOver(Path("from"), Path("to")));
  EXPECT_EQ(TestFolder::Read(Path("to")), content);
  EXPECT_EQ(fs::status(Path("to")).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(CopyFileOver(Path("from"), Path("from")));
  EXPECT_EQ(TestFolder::Read(Path("from")), content);
}

TEST_F(Files, ACopyThatFailsLeavesTheOldFile) {
  folder_.Write("from", std::string(1000, 'x'));
  folder_.Write("to", "old");
  fs::create_directory(folder_ / "directory");
  EXPECT_FALSE(CopyFileOver(Path("missing"), Path("to")));
  EXPECT_FALSE(CopyFileOver(Path("directory"), Path("to")));
  EXPECT_FALSE(CopyFileOver(Path("from"), Path("directory")));
  EXPECT_FALSE(CopyFileOver(Path("from"), Path("nowhere/to")));
  {
    const test::FullDisk disk(999);
    EXPECT_FALSE(CopyFileOver(Path("from"), Path("to")));
  }
  EXPECT_EQ(TestFolder::Read(Path("to")), "old");
  EXPECT_EQ(Count(), 2u);
}

TEST_F(Files, AReplacementTakesItsNameOnlyWhenItIsCommitted) {
  folder_.Write("file", "old");
  {
    const auto dropped = ReplacementFile::Create(Path("file"));
    ASSERT_TRUE(dropped->File().Write("new", 3));
    EXPECT_EQ(TestFolder::Read(Path("file")), "old");
  }
  EXPECT_EQ(Count(), 1u);
  const auto first = ReplacementFile::Create(Path("file"));
  const auto second = ReplacementFile::Create(Path("file"));
  ASSERT_TRUE(first->File().Write("1", 1));
  ASSERT_TRUE(second->File().Write("2", 1));
  EXPECT_TRUE(second->Commit());
  EXPECT_TRUE(first->Commit());
  EXPECT_EQ(TestFolder::Read(Path("file")), "1");
  EXPECT_EQ(Count(), 1u);
}

TEST_F(Files, WhatIsLeftToReadFollowsThePositionThatOthersMove) {
  folder_.Write("file", "0123456789");
  const auto file = NativeFile::OpenForReading(Path("file"));
  char bytes[8] = {};
  EXPECT_TRUE(file->Read(bytes, 2));
  EXPECT_EQ(::lseek(static_cast<int>(file->Handle()), 3, SEEK_CUR), 5);
  EXPECT_EQ(file->Remaining(), 5u);
  EXPECT_FALSE(file->Read(bytes, 6));
  EXPECT_EQ(file->Remaining(), 0u);
}

TEST_F(Files, ADirectoryIsCutOffAtTheLastSeparator) {
  EXPECT_EQ(DirectoryOf("/a/b.c"), "/a");
  EXPECT_EQ(DirectoryOf("a\\b"), "");
  EXPECT_EQ(DirectoryOf("b"), "");
}

}  // namespace
}  // namespace gantry::platform
