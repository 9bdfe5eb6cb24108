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
