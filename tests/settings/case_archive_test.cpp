#include "settings/case_archive.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "settings/byte_stream.h"
#include "support/test_folder.h"

namespace gantry {
namespace {

using test::Header;
using test::Text;
using test::Word;
using Direction = CaseArchive::Direction;

TEST(CaseArchive, AFailedTextLeavesThePosition) {
  std::string block = Header() + Word(100) + "ab";
  CaseArchive archive(block, Direction::kRead);
  std::string text = "kept";
  EXPECT_THROW(archive.Transfer(text), ArchiveError);
  EXPECT_EQ(text, "kept");
  uint32_t count = 0;
  archive.Transfer(count);
  EXPECT_EQ(count, 100u);
}

TEST(CaseArchive, ATextThatDoesNotFitLeavesThePositionForOneThatDoes) {
  std::string block(8 + 6, '~');
  CaseArchive archive(block, Direction::kWrite);
  std::string longText = "abc";
  std::string shortText = "ab";
  EXPECT_THROW(archive.Transfer(longText), ArchiveError);
  archive.Transfer(shortText);
  EXPECT_EQ(block, Header() + Text("ab"));
}

TEST(CaseArchive, RefusesAnyOtherHeader) {
  for (std::string block : {Word(2) + Header().substr(4), Word(1) + Word(0x1AD25F38), Word(0),
                            Header().substr(0, 7), std::string()}) {
    EXPECT_THROW(CaseArchive(block, Direction::kRead), ArchiveError);
  }
}

TEST(CaseArchive, GoesThroughAFileInTheSameForm) {
  const test::TestFolder folder;
  const std::string path = (folder / "stream").string();
  const auto file = platform::ReplacementFile::Create(path);
  CaseArchive out(file->File(), Direction::kWrite);
  std::string text = "P1\xff";
  int32_t number = -2;
  out.Transfer(text);
  out.Transfer(number);
  ASSERT_TRUE(file->Commit());
  EXPECT_EQ(test::TestFolder::Read(path), Header() + Text("P1\xff") + Word(0xFFFFFFFE));

  folder.Write("stream", Header() + Text("P1") + Word(0x7FFFFFFF) + "ab");
  const auto in = platform::NativeFile::OpenForReading(path);
  CaseArchive archive(*in, Direction::kRead);
  archive.Transfer(text);
  EXPECT_EQ(text, "P1");
  EXPECT_THROW(archive.Transfer(text), ArchiveError);
}

}  // namespace
}  // namespace gantry
