#include "support/wire_entries.h"

#include <algorithm>
#include <cstring>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace gantry::test {

namespace {

constexpr size_t kChunk = 65536;

template <class T>
std::string BytesOf(const std::vector<T>& values) {
  return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

struct Encoder {
  const std::string& name;

  std::string operator()(Marker marker) const { return HeaderBytes(name, marker.count, "MESS"); }
  std::string operator()(const Ints& values) const {
    return HeaderBytes(name, values.size(), "INTE") + BytesOf(values);
  }
  std::string operator()(const Numbers& values) const {
    return HeaderBytes(name, values.size(), "DOUB") + BytesOf(values);
  }
  std::string operator()(const Texts& values) const {
    std::string bytes = HeaderBytes(name, values.size(), "CSTR");
    for (const std::string& value : values) bytes += Word(value.size()) + value;
    return bytes;
  }
};

class Decoder {
 public:
  explicit Decoder(const std::string& payload) : payload_(payload) {}

  bool AtEnd() const { return position_ == payload_.size(); }

  Entry Next() {
    std::string name = Bytes(Scalar<uint8_t>());
    const auto count = Scalar<uint64_t>();
    const std::string tag = Bytes(4);
    if (tag == "MESS") return {std::move(name), Marker{count}};
    if (tag == "INTE") return {std::move(name), Array<int32_t>(count)};
    if (tag == "DOUB") return {std::move(name), Array<double>(count)};
    if (tag != "CSTR") throw std::runtime_error("no such tag: " + tag);
    Texts texts;
    for (uint64_t i = 0; i < count; ++i) texts.push_back(Bytes(Scalar<uint64_t>()));
    return {std::move(name), std::move(texts)};
  }

 private:
  std::string Bytes(uint64_t length) {
    if (length > payload_.size() - position_) throw std::runtime_error("the payload is too short");
    position_ += length;
    return payload_.substr(position_ - length, length);
  }

  template <class T>
  T Scalar() {
    T value;
    std::memcpy(&value, Bytes(sizeof value).data(), sizeof value);
    return value;
  }

  template <class T>
  std::vector<T> Array(uint64_t count) {
    std::vector<T> values;
    for (uint64_t i = 0; i < count; ++i) values.push_back(Scalar<T>());
    return values;
  }

  const std::string& payload_;
  size_t position_ = 0;
};

Texts Split(const std::string& list) {
  Texts parts;
  for (size_t at = 0; at < list.size();) {
    const size_t end = std::min(list.find(", ", at), list.size());
    parts.push_back(list.substr(at, end - at));
    if (parts.back() == "\"\"") parts.back().clear();
    at = end + 2;
  }
  return parts;
}

template <class T>
std::vector<T> NumbersIn(const std::string& list) {
  std::vector<T> values;
  for (const std::string& part : Split(list)) values.push_back(static_cast<T>(std::stod(part)));
  return values;
}

Entry MakeEntry(const std::string& name, const std::string& data) {
  if (data.empty()) return {name};
  const std::string list = data.substr(1, data.size() - 2);
  if (data.front() == '{') return {name, Split(list)};
  if (data.front() == '[') return {name, NumbersIn<double>(list)};
  if (data.front() == '<') return {name, NumbersIn<int32_t>(list)};
  return {name, Marker{std::stoull(data.substr(1))}};
}

struct Printer {
  std::ostream& out;

  void operator()(Marker marker) const {
    if (marker.count != 0) out << '#' << marker.count;
  }
  template <class T>
  void operator()(const std::vector<T>& values) const {
    out << '{';
    for (size_t i = 0; i < values.size(); ++i) out << (i == 0 ? "" : ", ") << values[i];
    out << '}';
  }
};

}  // namespace

std::string Word(uint64_t value) { return {reinterpret_cast<const char*>(&value), sizeof value}; }

std::string HeaderBytes(const std::string& name, uint64_t count, const std::string& tag) {
  return static_cast<char>(name.size()) + name + Word(count) + tag;
}

std::string Payload(const Entries& entries) {
  std::string payload;
  for (const Entry& entry : entries) payload += std::visit(Encoder{entry.name}, entry.data);
  return payload;
}

std::string FrameOf(const std::string& payload) {
  std::string frame = Word(payload.size());
  if (payload.empty()) return frame + Word(0);
  for (size_t offset = 0; offset < payload.size(); offset += kChunk) {
    const std::string chunk = payload.substr(offset, kChunk);
    frame += Word(chunk.size()) + chunk;
  }
  return frame;
}

std::string Frame(const Entries& entries) { return FrameOf(Payload(entries)); }

Entries Decode(const std::string& payload) {
  Entries entries;
  for (Decoder decoder(payload); !decoder.AtEnd();) entries.push_back(decoder.Next());
  return entries;
}

std::string Describe(const Entries& entries) {
  std::ostringstream text;
  text.precision(17);
  for (const Entry& entry : entries) {
    text << entry.name;
    std::visit(Printer{text}, entry.data);
    text << ' ';
  }
  return text.str();
}

Entries Parse(const std::string& text) {
  static const std::regex kEntry(R"((\w+)(#\d+|\{[^}]*\}|\[[^\]]*\]|<[^>]*>)?)");
  Entries entries;
  for (std::sregex_iterator at(text.begin(), text.end(), kEntry), end; at != end; ++at) {
    entries.push_back(MakeEntry((*at)[1], (*at)[2]));
  }
  return entries;
}

Entries Step(const std::string& position, double days, const Ints& date) {
  return {"STEP", {"POSITION", Texts{position}}, {"TIME", Numbers{days}}, {"DATE", date}, "END"};
}

}  // namespace gantry::test
