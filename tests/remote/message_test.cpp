#include <array>
#include <functional>

#include <gtest/gtest.h>

#include "remote/remote_message.h"
#include "remote/wire_bytes.h"

namespace gantry::test {
namespace {

MessageReader ReaderOf(const std::string& bytes) {
  return MessageReader(std::as_bytes(std::span(bytes)));
}

TEST(MessageReader, ReadsWhatAWriterPutsOneBehindTheOther) {
  const std::string cut("cut\0here", 8);
  MessageWriter writer;
  writer.PutInt(-2);
  writer.PutDouble(1.5);
  writer.PutByte(7);
  writer.PutText(cut);
  writer.PutIntArray(std::vector<int32_t>{1, 2});
  writer.PutDoubleArray(std::vector<double>{3.0});
  const std::string bytes(reinterpret_cast<const char*>(writer.Bytes().data()),
                          writer.Bytes().size());
  EXPECT_EQ(bytes, Int(-2) + Double(1.5) + "\7" + Text(cut) + Int(1) + Int(2) + Double(3.0));
  EXPECT_EQ(writer.Capacity(), 100);
  writer.PutBytes(std::vector<std::byte>(100 - bytes.size()));
  EXPECT_EQ(writer.Capacity(), 200) << "always greater than what is used";
  MessageReader reader = ReaderOf(bytes);
  EXPECT_EQ(reader.GetInt(), -2);
  EXPECT_EQ(reader.GetDouble(), 1.5);
  EXPECT_EQ(reader.GetByte(), 7);
  EXPECT_EQ(reader.GetText(), "cut");
  std::array<int32_t, 2> ints{};
  reader.GetIntArray(ints);
  EXPECT_EQ(ints, (std::array<int32_t, 2>{1, 2}));
  EXPECT_EQ(reader.Remaining(), sizeof(double));
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
    MessageReader reader = ReaderOf(bytes);
    EXPECT_THROW(read(reader), MessageOverrun) << bytes.size();
  }
}

}  // namespace
}  // namespace gantry::test
