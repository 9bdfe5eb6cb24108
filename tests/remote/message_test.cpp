#include <array>

#include <gtest/gtest.h>

#include "remote/remote_message.h"
#include "remote/wire_bytes.h"

namespace gantry::test {
namespace {

MessageReader ReaderOf(const std::string& bytes) {
  return MessageReader(std::as_bytes(std::span(bytes)));
}

TEST(MessageWriter, CapacityIsAlwaysGreaterThanWhatIsUsed) {
  MessageWriter writer;
  EXPECT_EQ(writer.Capacity(), 100);
  writer.PutBytes(std::vector<std::byte>(96));
  EXPECT_EQ(writer.Capacity(), 100);
  writer.PutInt(0);
  EXPECT_EQ(writer.Used(), 100);
  EXPECT_EQ(writer.Capacity(), 200);
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
  const std::vector<std::pair<std::string, void (*)(MessageReader&)>> cases = {
      {std::string(3, '\0'), [](MessageReader& reader) { reader.GetInt(); }},
      {std::string(7, '\0'), [](MessageReader& reader) { reader.GetDouble(); }},
      {"", [](MessageReader& reader) { reader.GetByte(); }},
      {Int(2) + "x", [](MessageReader& reader) { reader.GetText(); }},
      {Int(-1) + "x", [](MessageReader& reader) { reader.GetText(); }},
      {Int(0x7fffffff) + "x", [](MessageReader& reader) { reader.GetText(); }},
      {Int(2) + Text(""), [](MessageReader& reader) { GetTexts(reader); }},
      {Int(-1), [](MessageReader& reader) { GetTexts(reader); }},
      {Int(0x7fffffff), [](MessageReader& reader) { GetTextRows(reader); }},
      {Int(0x7fffffff), [](MessageReader& reader) { GetDoubleRows(reader); }},
      {Int(0x20000001) + std::string(8, 'x'),
       [](MessageReader& reader) {
         Doubles values;
         GetDoubles(reader, values);
       }},
  };
  for (size_t i = 0; i < cases.size(); ++i) {
    MessageReader reader = ReaderOf(cases[i].first);
    EXPECT_THROW(cases[i].second(reader), MessageOverrun) << "case " << i;
  }
}

}  // namespace
}  // namespace gantry::test
