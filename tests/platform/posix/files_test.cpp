#include "platform/files.h"

#include <cstring>
#include <iterator>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/posix/full_disk.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using test::TestFolder;

class PosixFiles : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  TestFolder folder_;
};

TEST_F(PosixFiles, NoPipeHoldsTheCallerUp) {
  ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_TRUE(CanOpenForReading(Path("pipe")));
  EXPECT_EQ(NativeFile::OpenForReading(Path("pipe")), nullptr);
}

TEST_F(PosixFiles, ACopyHasTheModeAndMayGoOverItself) {
  fs::permissions(folder_.Write("from", "content"), fs::perms::owner_all);
  folder_.Write("to", "old and longer or not");
  EXPECT_TRUE(CopyFileOver(Path("from"), Path("to")));
  EXPECT_EQ(fs::status(Path("to")).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(CopyFileOver(Path("to"), Path("to")));
  EXPECT_EQ(TestFolder::Read(Path("to")), "content");
}

TEST_F(PosixFiles, ACopyToAFullDiskLeavesTheOldFileAloneAndNothingElse) {
  folder_.Write("from", std::string(1000, 'x'));
  folder_.Write("to", "old");
  const auto count = [this] { return std::distance(fs::directory_iterator(folder_.Path()), {}); };
  const auto before = count();
  {
    const test::FullDisk disk(999);
    EXPECT_FALSE(CopyFileOver(Path("from"), Path("to")));
  }
  EXPECT_EQ(TestFolder::Read(Path("to")), "old");
  EXPECT_EQ(count(), before);
}

TEST_F(PosixFiles, AReplacementIsPutOverTheOldFileWhereNoNewOneFitsBesideIt) {
  const std::string name(255, 'n');  // as long as names can be
  EXPECT_EQ(ReplacementFile::Create(Path(name + "x")), nullptr);
  folder_.Write(name, "old");
  for (const auto& [content, most] : {std::pair{"longer", 5}, {"longer", 6}, {"short", 6}}) {
    const std::string before = TestFolder::Read(Path(name));
    const auto file = ReplacementFile::Create(Path(name));
    ASSERT_TRUE(file->File().Write(content, std::strlen(content)));
    EXPECT_EQ(TestFolder::Read(Path(name)), before);
    const test::FullDisk disk(static_cast<rlim_t>(most));
    EXPECT_EQ(file->Commit(), most == 6);
    EXPECT_EQ(TestFolder::Read(Path(name)), most == 6 ? content : before);
  }
}

TEST_F(PosixFiles, WhatIsLeftToReadFollowsThePositionThatOthersMove) {
  folder_.Write("file", "0123456789");
  const auto file = NativeFile::OpenForReading(Path("file"));
  char bytes[8] = {};
  EXPECT_TRUE(file->Read(bytes, 2));
  EXPECT_EQ(::lseek(static_cast<int>(file->Handle()), 3, SEEK_CUR), 5);
  EXPECT_EQ(file->Remaining(), 5u);
  EXPECT_FALSE(file->Read(bytes, 6));
  EXPECT_EQ(file->Remaining(), 0u);
}

TEST_F(PosixFiles, ADirectoryIsCutOffAtTheLastSeparator) {
  EXPECT_EQ(DirectoryOf("/a/b.c"), "/a");
  EXPECT_EQ(DirectoryOf("a\\b"), "");
  EXPECT_EQ(DirectoryOf("b"), "");
}

}  // namespace
}  // namespace gantry::platform
