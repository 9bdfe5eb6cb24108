#include "described_toml/checked_toml.h"

#include <algorithm>
#include <vector>

namespace gantry::toml_reader {

namespace {

bool Stumbles(std::string_view text) {
  try {
    static_cast<void>(toml::parse(text));
  } catch (const ParserFault&) {
    return true;
  } catch (const toml::parse_error&) {
    return false;
  }
  return false;
}

/// The line at which the parser stumbles. Lines before it don't trouble it, so halving finds it.
size_t LineOfParserFault(std::string_view text) {
  std::vector<size_t> ends;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') ends.push_back(i + 1);
  }
  ends.push_back(text.size());
  const auto first = std::partition_point(
      ends.begin(), ends.end() - 1, [&](size_t end) { return !Stumbles(text.substr(0, end)); });
  return static_cast<size_t>(first - ends.begin()) + 1;
}

/// What a text or a comment that begins here ends with; empty where neither begins.
std::string_view EndOf(std::string_view rest) {
  if (rest[0] == '#') return "\n";
  if (rest[0] != '"' && rest[0] != '\'') return "";
  for (const std::string_view quote : {"\"\"\"", "'''"}) {
    if (rest.starts_with(quote)) return quote;
  }
  return rest.substr(0, 1);
}

/// The place behind a text or a comment that goes on here and ends so. One of a single line ends
/// with that at the latest.
size_t Behind(std::string_view end, std::string_view text, size_t at) {
  for (; at < text.size(); ++at) {
    const char letter = text[at];
    if (letter == '\n' && end.size() == 1) return at + 1;
    if (letter == end[0] && text.substr(at).starts_with(end)) return at + end.size();
    if (letter == '\\' && end[0] == '"') ++at;
  }
  return text.size();
}

/// Blanks beyond ASCII lead the parser astray, and such letters mean nothing outside of texts and
/// comments.
void RequirePlainKeys(std::string_view text) {
  for (size_t i = 0; i < text.size();) {
    if (static_cast<unsigned char>(text[i]) >= 0x80) {
      const auto line = std::ranges::count(text.substr(0, i), '\n') + 1;
      throw TomlError(static_cast<size_t>(line), "only texts and comments may go beyond ASCII");
    }
    const std::string_view end = EndOf(text.substr(i));
    i = end.empty() ? i + 1 : Behind(end, text, i + (end == "\n" ? 1 : end.size()));
  }
}

/// The text without the mark that some editors put ahead of UTF-8. Texts in UTF-16 are refused,
/// with their name: their zero bytes would be told of one by one.
std::string_view WithoutByteOrderMark(std::string_view text) {
  using namespace std::string_view_literals;
  for (const std::string_view mark : {"\xFF\xFE"sv, "\xFE\xFF"sv}) {
    const bool isZero = text.size() > 1 && (text[0] == '\0') != (text[1] == '\0');
    if (text.starts_with(mark) || isZero) {
      throw TomlError(1, "the file is in UTF-16; save it in UTF-8");
    }
  }
  return text.starts_with(kByteOrderMark) ? text.substr(kByteOrderMark.size()) : text;
}

}  // namespace

toml::table Parse(std::string_view whole) {
  const std::string_view text = WithoutByteOrderMark(whole);
  RequirePlainKeys(text);
  try {
    return toml::parse(text);
  } catch (const toml::parse_error& error) {
    throw TomlError(error.source().begin.line, std::string(error.description()));
  } catch (const ParserFault&) {
    throw TomlError(LineOfParserFault(text), "this is no TOML");
  }
}

}  // namespace gantry::toml_reader
