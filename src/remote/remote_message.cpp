#include "remote/remote_message.h"

#include "remote/socket.h"

namespace gantry {

namespace {

constexpr size_t kCountSize = 4;

void PutCount(MessageWriter& writer, size_t count) { writer.PutInt(static_cast<int32_t>(count)); }

}  // namespace

int32_t Send(const MessageWriter& writer, Socket& socket, Routine routine) {
  try {
    const auto number = static_cast<int32_t>(routine);
    MessageWriter body;
    body.PutInt(number).PutBytes(writer.Bytes());
    if (writer.Used() == 0) body.PutInt(number);
    return socket.SendFrame(body.Bytes());
  } catch (...) {
    return -1;
  }
}

void PutTexts(MessageWriter& writer, const Strings& texts) {
  PutCount(writer, texts.size());
  for (const std::string& text : texts) writer.PutText(text);
}

void PutDoubles(MessageWriter& writer, std::span<const double> values) {
  PutCount(writer, values.size());
  writer.PutDoubleArray(values);
}

void PutTextRows(MessageWriter& writer, const std::vector<Strings>& rows) {
  PutCount(writer, rows.size());
  for (const Strings& row : rows) PutTexts(writer, row);
}

void PutDoubleRows(MessageWriter& writer, const std::vector<Doubles>& rows) {
  PutCount(writer, rows.size());
  for (const Doubles& row : rows) PutDoubles(writer, row);
}

Strings GetTexts(MessageReader& reader) { return GetTexts(reader, reader.GetCount(kCountSize)); }

Strings GetTexts(MessageReader& reader, size_t count) {
  reader.Require(count, kCountSize);
  Strings texts;
  texts.reserve(count);
  for (size_t i = 0; i < count; ++i) texts.push_back(reader.GetText());
  return texts;
}

void GetDoubles(MessageReader& reader, Doubles& values) {
  const size_t count = reader.GetCount(sizeof(double));
  const size_t begin = values.size();
  values.resize(begin + count);
  reader.GetDoubleArray(std::span(values).subspan(begin));
}

std::vector<Strings> GetTextRows(MessageReader& reader) {
  const size_t count = reader.GetCount(kCountSize);
  std::vector<Strings> rows;
  rows.reserve(count);
  for (size_t i = 0; i < count; ++i) rows.push_back(GetTexts(reader));
  return rows;
}

std::vector<Doubles> GetDoubleRows(MessageReader& reader) {
  const size_t count = reader.GetCount(kCountSize);
  std::vector<Doubles> rows(count);
  for (Doubles& row : rows) GetDoubles(reader, row);
  return rows;
}

}  // namespace gantry
