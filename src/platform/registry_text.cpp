#include "platform/registry_text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "platform/text.h"

namespace gantry::platform {

namespace {

constexpr std::string_view kFirstLine = "REGEDIT4";
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool StartsWithNoCase(std::string_view text, std::string_view start) {
  return EqualNoCase(text.substr(0, start.size()), start);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

/// Takes a quoted text off the front; none, with `text` as it was, when there isn't a whole one.
std::optional<std::string> TakeQuoted(std::string_view& text) {
  if (text.empty() || text[0] != '"') return std::nullopt;
  std::string plain;
  for (size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') {
      text.remove_prefix(i + 1);
      return plain;
    }
    if (text[i] == '\\' && ++i == text.size()) break;
    plain += text[i];
  }
  return std::nullopt;
}

/// True for a value in hexadecimal that goes on in the next line.
bool GoesOn(std::string_view line) {
  if (!line.ends_with('\\')) return false;
  if (line.starts_with('@')) {
    line.remove_prefix(1);
  } else if (!TakeQuoted(line)) {
    return false;
  }
  return StartsWithNoCase(Trimmed(line), "=hex");
}

/// True for lines of which the last one has to be followed by another: a blank line ends what goes
/// on.
bool IsOpen(std::string_view lines) {
  const std::string_view ended = lines.substr(0, lines.size() - (lines.ends_with('\n') ? 1 : 0));
  const std::string_view last = ended.substr(ended.rfind('\n') + 1);
  return !Trimmed(last).empty() && GoesOn(Trimmed(lines));
}

/// Takes the first line with its end off the text, and with it those on which it goes on.
std::string_view TakeEntry(std::string_view& text) {
  size_t end = 0;
  do {
    const size_t feed = text.find('\n', end);
    end = feed == std::string_view::npos ? text.size() : feed + 1;
  } while (end < text.size() && IsOpen(text.substr(0, end)));
  const std::string_view entry = text.substr(0, end);
  text.remove_prefix(end);
  return entry;
}

/// The bytes of "41,42,00"; "\" and blanks between them are where a line went on.
std::optional<std::string> ParseBytes(std::string_view list) {
  std::string bytes;
  while (!(list = Trimmed(list)).empty()) {
    if (list[0] == '\\' || list[0] == ',') {
      list.remove_prefix(1);
      continue;
    }
    unsigned byte = 0;
    const auto read = std::from_chars(list.data(), list.data() + list.size(), byte, 16);
    if (read.ec != std::errc() || byte > 255) return std::nullopt;
    bytes += static_cast<char>(byte);
    list.remove_prefix(static_cast<size_t>(read.ptr - list.data()));
  }
  return bytes;
}

}  // namespace

RegistryText::RegistryText(std::string_view text) {
  if (const size_t feed = text.find('\n'); feed != std::string_view::npos) {
    if (feed == 0 || text[feed - 1] != '\r') lineEnd_ = "\n";
  }
  while (!text.empty()) entries_.push_back(ReadEntry(TakeEntry(text)));
  if (entries_.empty() || !EqualNoCase(Trimmed(entries_[0].raw), kFirstLine)) {
    InsertLine(0, std::string(kFirstLine));
  }
}

RegistryText::Entry RegistryText::ReadEntry(std::string_view raw) {
  Entry entry{.kind = Entry::Kind::kOther, .raw = std::string(raw), .name = {}, .data = {}};
  std::string_view line = Trimmed(raw);
  if (line.size() >= 2 && line.front() == '[' && line.back() == ']') {
    entry.kind = Entry::Kind::kKey;
    entry.name = line.substr(1, line.size() - 2);
  } else if (const auto name = TakeQuoted(line)) {
    line = Trimmed(line);
    if (!line.starts_with('=')) return entry;
    entry.kind = Entry::Kind::kValue;
    entry.name = *name;
    entry.data = Trimmed(line.substr(1));
  }
  return entry;
}

std::string RegistryText::Text() const {
  std::string text;
  for (const Entry& entry : entries_) text += entry.raw;
  return text;
}

bool RegistryText::HasKey(std::string_view key) const { return Locate(key, {}).end.has_value(); }

void RegistryText::AddKey(std::string_view key) {
  if (HasKey(key)) return;
  InsertLine(entries_.size(), {});
  InsertLine(entries_.size(), "[" + std::string(key) + "]");
}

RegistryText::Place RegistryText::Locate(std::string_view key, std::string_view name) const {
  Place place;
  bool inKey = false;
  for (size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.kind == Entry::Kind::kKey) inKey = EqualNoCase(entry.name, key);
    if (!inKey || entry.kind == Entry::Kind::kOther) continue;
    place.end = i + 1;
    if (entry.kind == Entry::Kind::kValue && EqualNoCase(entry.name, name)) place.value = i;
  }
  return place;
}

std::optional<std::string> RegistryText::Find(std::string_view key, std::string_view name) const {
  const Place place = Locate(key, name);
  if (!place.value) return std::nullopt;
  return entries_[*place.value].data;
}

void RegistryText::Set(std::string_view key, std::string_view name, std::string_view data) {
  const std::string line = Quoted(name) + "=" + std::string(data);
  const Place place = Locate(key, name);
  if (place.value) {
    entries_[*place.value] = ReadEntry(line + lineEnd_);
  } else if (place.end) {
    InsertLine(*place.end, line);
  }
}

void RegistryText::InsertLine(size_t at, const std::string& line) {
  if (at > 0 && !entries_[at - 1].raw.ends_with('\n')) entries_[at - 1].raw += lineEnd_;
  if (at > 0 && IsOpen(entries_[at - 1].raw)) entries_[at - 1].raw += lineEnd_;
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(at), ReadEntry(line + lineEnd_));
}

std::string FormatRegistryText(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
  if (std::none_of(text.begin(), text.end(), isControl)) return Quoted(text);
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string data = "hex(1):";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    data += {kDigits[byte >> 4], kDigits[byte & 15], ','};
  }
  return data + "00";
}

std::string FormatRegistryNumber(uint32_t number) {
  char data[sizeof "dword:12345678"];
  std::snprintf(data, sizeof data, "dword:%08x", static_cast<unsigned>(number));
  return data;
}

std::optional<std::string> ParseRegistryText(std::string_view data) {
  constexpr std::string_view kHex = "hex(1):";
  if (StartsWithNoCase(data, kHex)) {
    auto bytes = ParseBytes(data.substr(kHex.size()));
    if (bytes) bytes->resize(std::min(bytes->size(), bytes->find('\0')));
    return bytes;
  }
  auto text = TakeQuoted(data);
  if (!text || !data.empty()) return std::nullopt;
  return text;
}

std::optional<uint32_t> ParseRegistryNumber(std::string_view data) {
  constexpr std::string_view kDword = "dword:";
  if (!StartsWithNoCase(data, kDword)) return std::nullopt;
  data.remove_prefix(kDword.size());
  uint32_t number = 0;
  const auto read = std::from_chars(data.data(), data.data() + data.size(), number, 16);
  if (read.ec != std::errc() || read.ptr != data.data() + data.size()) return std::nullopt;
  return number;
}

}  // namespace gantry::platform
