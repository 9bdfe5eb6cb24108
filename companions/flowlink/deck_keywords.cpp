#include "flowlink/deck_keywords.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <fstream>

#include "flowlink/link_fault.h"

namespace gantry::flowlink {

namespace {

constexpr int kDeepestInclude = 16;
constexpr size_t kLongestKeyword = 8;
constexpr size_t kMostRepeats = 1'000'000;
constexpr std::string_view kBlanks = " \t\r";

std::string_view Trim(std::string_view text) {
  const size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// Position of `mark` outside of quotes.
size_t FindUnquoted(std::string_view text, std::string_view mark) {
  char quote = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (quote != 0) {
      if (text[i] == quote) quote = 0;
    } else if (text[i] == '\'' || text[i] == '"') {
      quote = text[i];
    } else if (text.substr(i).starts_with(mark)) {
      return i;
    }
  }
  return std::string_view::npos;
}

bool LooksLikeKeyword(std::string_view line) {
  if (line.empty() || line.size() > kLongestKeyword) return false;
  if (std::isupper(static_cast<unsigned char>(line[0])) == 0) return false;
  return std::ranges::all_of(line, [](char letter) {
    const auto code = static_cast<unsigned char>(letter);
    return std::isupper(code) != 0 || std::isdigit(code) != 0 || letter == '_' || letter == '-' ||
           letter == '+';
  });
}

class DeckReader {
 public:
  void ReadFile(const std::filesystem::path& file, int depth) {
    std::ifstream in(file);
    if (!in) throw LinkFault("the deck's file " + file.string() + " can't be read");
    if (depth > kDeepestInclude) throw LinkFault(file.string() + " includes itself");
    size_t number = 0;
    for (std::string line; std::getline(in, line);) {
      ++number;
      const std::string text(Trim(std::string_view(line).substr(0, FindUnquoted(line, "--"))));
      if (!text.empty()) Take(text, file, number, depth);
    }
  }

  std::vector<DeckKeyword> keywords;

 private:
  void Take(const std::string& text, const std::filesystem::path& file, size_t number, int depth) {
    const bool isTitle = !keywords.empty() && keywords.back().name == "TITLE";
    if (isTitle && keywords.back().lines.empty()) {
      keywords.back().lines.push_back(text);
    } else if (!isInRecord_ && LooksLikeKeyword(text)) {
      keywords.push_back({text, file.string() + ":" + std::to_string(number), {}});
    } else {
      TakeData(text, file, depth);
    }
  }

  void TakeData(const std::string& text, const std::filesystem::path& file, int depth) {
    if (keywords.empty()) throw LinkFault(file.string() + " doesn't begin with a keyword");
    keywords.back().lines.push_back(text);
    isInRecord_ = FindUnquoted(text, "/") == std::string::npos;
    // An unquoted path of an INCLUDE may hold slashes: it ends with the line's last one.
    if (keywords.back().name != "INCLUDE") return;
    isInRecord_ = text.back() != '/';
    if (!isInRecord_) Include(file.parent_path(), depth);
  }

  void Include(const std::filesystem::path& folder, int depth) {
    std::string path;
    for (const std::string& line : keywords.back().lines) path += line;
    path = Trim(std::string_view(path).substr(0, path.size() - 1));
    std::erase_if(path, [](char letter) { return letter == '\'' || letter == '"'; });
    const std::string place = keywords.back().place;
    keywords.pop_back();
    if (path.empty() || path.find('$') != std::string::npos) {
      throw LinkFault(place + ": an INCLUDE needs a plain path, not '" + path + "'");
    }
    ReadFile(folder / path, depth + 1);
  }

  bool isInRecord_ = false;
};

/// "N*ITEM" as N and ITEM.
void AppendItem(std::string_view token, DeckRecord& record) {
  size_t count = 0;
  const auto read = std::from_chars(token.data(), token.data() + token.size(), count);
  const size_t digits = static_cast<size_t>(read.ptr - token.data());
  if (read.ec != std::errc() || digits == token.size() || token[digits] != '*') {
    record.emplace_back(token);
    return;
  }
  if (count > kMostRepeats)
    throw LinkFault("a deck can't repeat an item as '" + std::string(token));
  record.insert(record.end(), count, std::string(token.substr(digits + 1)));
}

/// Takes the first item off a line.
void TakeItem(std::string_view& rest, DeckRecord& record) {
  const bool isQuoted = rest[0] == '\'' || rest[0] == '"';
  if (!isQuoted) {
    const size_t end = std::min(rest.find_first_of(" \t\r/"), rest.size());
    AppendItem(rest.substr(0, end), record);
    rest.remove_prefix(end);
    return;
  }
  const size_t end = std::min(rest.find(rest[0], 1), rest.size());
  record.emplace_back(rest.substr(1, end - 1));
  rest.remove_prefix(std::min(end + 1, rest.size()));
}

}  // namespace

std::vector<DeckKeyword> ReadDeckKeywords(const std::filesystem::path& deck) {
  DeckReader reader;
  reader.ReadFile(deck, 0);
  return std::move(reader.keywords);
}

std::vector<DeckRecord> RecordsOf(const DeckKeyword& keyword) {
  std::vector<DeckRecord> records;
  DeckRecord record;
  for (const std::string& line : keyword.lines) {
    std::string_view rest = Trim(line);
    while (!rest.empty() && rest[0] != '/') {
      TakeItem(rest, record);
      rest = Trim(rest);
    }
    if (rest.empty()) continue;
    records.push_back(std::move(record));
    record.clear();
  }
  return records;
}

}  // namespace gantry::flowlink
