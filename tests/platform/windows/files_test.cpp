#include "platform/files.h"

#include <gtest/gtest.h>

#include "platform/file_path.h"
#include "platform/text.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

namespace fs = std::filesystem;
using test::TestFolder;

class WindowsFiles : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return NameOf(folder_.Path()) + "\\" + name; }
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
TEST_F(WindowsFiles, NamesAreInTheCodePage) {
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

TEST_F(WindowsFiles, WhatIsNoFileCantBeOpenedForReading) {
  EXPECT_FALSE(CanOpenForReading(Path("a\"b")));
  EXPECT_EQ(NativeFile::OpenForReading(Path("a\"b")), nullptr);
  EXPECT_EQ(NativeFile::OpenForReading("NUL"), nullptr) << "a device is no file";
}

}  // namespace
}  // namespace gantry::platform
