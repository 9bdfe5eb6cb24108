#include "platform/files.h"

#include <gtest/gtest.h>

#include "platform/file_path.h"
#include "platform/text.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using test::TestFolder;

class Files : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return NameOf(folder_.Path()) + "\\" + name; }
  size_t Count() const {
    return static_cast<size_t>(
        std::distance(fs::directory_iterator(folder_.Path()), fs::directory_iterator()));
  }
  bool Fill(const std::string& name, const std::string& content) const {
    const auto file = ReplacementFile::Create(Path(name));
    return file != nullptr && file->File().Write(content.data(), content.size()) && file->Commit();
  }
  std::string Content(const std::string& name) const {
    return TestFolder::Read(PathOf(Path(name)));
  }

  TestFolder folder_;
};

// The euro sign has another number in Unicode than in the code page, the e with its accent the
// same.
TEST_F(Files, NamesAreInTheCodePage) {
  const std::string name = "\x80 5 d\xE9pens\xE9s.txt";
  ASSERT_TRUE(Fill(name, "1"));
  EXPECT_TRUE(fs::exists(folder_.Path() / L"\u20AC 5 d\u00E9pens\u00E9s.txt"));
  EXPECT_TRUE(FileExists(Path(name)));
  EXPECT_TRUE(CanOpenForReading(Path(name)));
  EXPECT_TRUE(CopyFileOver(Path(name), Path("copie \xE9.txt")));
  EXPECT_EQ(Content("copie \xE9.txt"), "1");
  EXPECT_EQ(NameOf(PathOf(Path(name))), Path(name));
  EXPECT_EQ(CodePageToUtf8("\x80 \xE9"), "\u20AC \u00E9");
}

TEST_F(Files, OnlyAFileCanBeOpenedForReading) {
  ASSERT_TRUE(Fill("file", "x"));
  fs::create_directory(folder_ / "directory");
  EXPECT_TRUE(CanOpenForReading(Path("file")));
  for (const char* none : {"directory", "missing", "a\"b", ""}) {
    EXPECT_FALSE(CanOpenForReading(*none != '\0' ? Path(none) : "")) << none;
    EXPECT_EQ(NativeFile::OpenForReading(*none != '\0' ? Path(none) : ""), nullptr) << none;
  }
  EXPECT_EQ(NativeFile::OpenForReading("NUL"), nullptr) << "a device is no file";
  EXPECT_TRUE(FileExists(Path("directory")));
  EXPECT_FALSE(FileExists(""));
}

TEST_F(Files, ACopyGoesOverWhatStandsThereAndAFailedOneLeavesIt) {
  ASSERT_TRUE(Fill("from", std::string(200000, '\0') + "end"));
  ASSERT_TRUE(Fill("to", "old"));
  fs::create_directory(folder_ / "directory");
  EXPECT_FALSE(CopyFileOver(Path("missing"), Path("to")));
  EXPECT_FALSE(CopyFileOver(Path("from"), Path("directory")));
  EXPECT_FALSE(CopyFileOver(Path("from"), Path("nowhere\\to")));
  EXPECT_EQ(Content("to"), "old");
  EXPECT_TRUE(CopyFileOver(Path("from"), Path("to")));
  EXPECT_EQ(Content("to"), Content("from"));
}

TEST_F(Files, AReplacementTakesItsNameOnlyWhenItIsCommitted) {
  ASSERT_TRUE(Fill("file", "old"));
  {
    const auto dropped = ReplacementFile::Create(Path("file"));
    ASSERT_TRUE(dropped->File().Write("new", 3));
    EXPECT_EQ(Content("file"), "old");
  }
  EXPECT_EQ(Count(), 1u);
  const auto first = ReplacementFile::Create(Path("file"));
  const auto second = ReplacementFile::Create(Path("file"));
  ASSERT_TRUE(first->File().Write("1", 1));
  ASSERT_TRUE(second->File().Write("2", 1));
  EXPECT_TRUE(second->Commit());
  EXPECT_TRUE(first->Commit());
  EXPECT_EQ(Content("file"), "1");
  EXPECT_EQ(Count(), 1u);
  EXPECT_EQ(ReplacementFile::Create(folder_.Path().string()), nullptr);
}

}  // namespace
}  // namespace gantry::platform
