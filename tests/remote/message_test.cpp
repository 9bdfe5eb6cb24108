#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "remote/remote_message.h"
#include "remote/wire_bytes.h"

namespace gantry::test {
namespace {

// What both make of each kind of element stands in routines.talk.
TEST(MessageWriter, HasMoreRoomThanItUsesAndItsTextsAreReadUpToAZero) {
  MessageWriter writer;
  writer.PutText(std::string("cut\0here", 8));
  writer.PutIntArray(std::array{1, 2});
  MessageReader reader(writer.Bytes());
  EXPECT_EQ(reader.GetText(), "cut");
  std::array<int32_t, 2> numbers{};
  reader.GetIntArray(numbers);
  EXPECT_EQ(numbers, (std::array{1, 2}));
  EXPECT_EQ(reader.Remaining(), 0u);
  EXPECT_EQ(writer.Capacity(), 100);
  writer.PutBytes(std::vector<std::byte>(100 - writer.Bytes().size()));
  EXPECT_EQ(writer.Capacity(), 200);
}

TEST(MessageReader, NeverLeavesItsBytes) {
  const std::pair<std::string, std::function<void(MessageReader&)>> cases[] = {
      {std::string(3, '\0'), &MessageReader::GetInt},
      {std::string(7, '\0'), &MessageReader::GetDouble},
      {"", &MessageReader::GetByte},
      {Int(2) + "x", &MessageReader::GetText},
      {Int(-1) + "x", &MessageReader::GetText},
      {Int(0x7fffffff) + "x", &MessageReader::GetText},
      {Int(2) + Text(""), [](MessageReader& reader) { GetTexts(reader); }},
      {Int(-1), [](MessageReader& reader) { GetTexts(reader); }},
      {Int(0x7fffffff), [](MessageReader& reader) { GetTextRows(reader); }},
      {Int(0x7fffffff), [](MessageReader& reader) { GetDoubleRows(reader); }},
  };
  for (const auto& [bytes, read] : cases) {
    MessageReader reader(std::as_bytes(std::span(bytes)));
    EXPECT_THROW(read(reader), MessageOverrun) << bytes.size();
  }
}

}  // namespace
}  // namespace gantry::test
