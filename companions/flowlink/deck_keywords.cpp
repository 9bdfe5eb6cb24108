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
    } else if (text[i] == mark[0] && text.substr(i).starts_with(mark)) {
      return i;
    }
  }
  return std::string_view::npos;
}

/// Keywords that the adapter acts on. flow takes what stands behind a keyword on its line for a
/// remark; so does the adapter for these, while for any other it can't be told from data.
constexpr std::string_view kActedOn[] = {
    "RUNSPEC", "GRID",   "EDIT",    "PROPS",    "REGIONS",  "SOLUTION", "SUMMARY",  "SCHEDULE",
    "TITLE",   "START",  "FIELD",   "METRIC",   "LAB",      "DENSITY",  "INCLUDE",  "PATHS",
    "DATES",   "TSTEP",  "END",     "ENDINC",   "TUNING",   "NEXTSTEP", "RPTRST",   "RPTSCHED",
    "UNIFOUT", "UNIFIN", "RESTART", "WCONPROD", "WCONINJE", "WCONHIST", "WCONINJH", "WELTARG",
    "WELOPEN", "WEFAC",  "WECON",   "GCONPROD", "GCONINJE", "GRUPTREE", "GRUPNET"};

bool IsNameLetter(char letter) {
  return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_' || letter == '-' ||
         letter == '+';
}

/// The keyword that a line begins with, in capitals; empty for data.
std::string KeywordOf(std::string_view line) {
  const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
  if (word.empty() || word.size() > kLongestKeyword) return {};
  if (std::isalpha(static_cast<unsigned char>(word[0])) == 0) return {};
  if (!std::ranges::all_of(word, IsNameLetter)) return {};
  std::string name = InCapitals(std::string(word));
  const bool isAlone = word.size() == line.size();
  return isAlone || std::ranges::find(kActedOn, name) != std::end(kActedOn) ? name : "";
}

class DeckReader {
 public:
  explicit DeckReader(std::filesystem::path root) : root_(std::move(root)) {}

  void ReadFile(const std::filesystem::path& file, const std::string& includedAt, int depth) {
    std::ifstream in(file);
    if (!in || std::filesystem::is_directory(file)) {
      throw LinkFault(includedAt + "the deck's file " + file.string() + " can't be read");
    }
    if (depth > kDeepestInclude) throw LinkFault(includedAt + file.string() + " includes itself");
    place_ = {file.string(), 0};
    for (std::string line; !isOver_ && std::getline(in, line);) {
      ++place_.line;
      const std::string text(Trim(std::string_view(line).substr(0, FindUnquoted(line, "--"))));
      if (KeywordOf(text) == "ENDINC" && !isInRecord_) return;
      if (text.empty()) {
        TakeEmptyLine(line);
      } else {
        Take(text, depth);
      }
    }
    if (in.bad()) throw LinkFault(place_.Text() + ": the file can't be read on from here");
  }

  std::vector<DeckKeyword> keywords;

 private:
  /// A title may be missing; the line below TITLE is empty then.
  void TakeEmptyLine(std::string_view line) {
    if (AwaitsTitle() && Trim(line).empty()) keywords.back().lines.push_back({place_.line, ""});
  }

  bool IsInTitle() const { return !keywords.empty() && keywords.back().name == "TITLE"; }
  bool AwaitsTitle() const { return IsInTitle() && keywords.back().lines.empty(); }

  void Take(const std::string& text, int depth) {
    const std::string name = isInRecord_ || AwaitsTitle() ? "" : KeywordOf(text);
    if (name == "END") {
      isOver_ = true;
    } else if (!name.empty()) {
      keywords.push_back({name, text, place_, {}});
    } else {
      TakeData(text, depth);
    }
  }

  void TakeData(const std::string& text, int depth) {
    if (keywords.empty()) {
      throw LinkFault(place_.Text() + ": the deck doesn't begin with a keyword");
    }
    DeckKeyword& keyword = keywords.back();
    if (IsInTitle()) {
      if (keyword.lines.empty()) keyword.lines.push_back({place_.line, text});
      return;
    }
    keyword.lines.push_back({place_.line, text});
    isInRecord_ = FindUnquoted(text, "/") == std::string::npos;
    if (keyword.name == "PATHS" && !isInRecord_) TakePath(text);
    if (keyword.name == "INCLUDE") TakeInclude(text, depth);
  }

  /// An unquoted path may hold slashes: it ends with one behind a blank, or at the line's end.
  static size_t EndOfPath(std::string_view text) {
    const size_t end = text.find(" /");
    if (end != std::string::npos) return end;
    return text.ends_with('/') ? text.size() - 1 : std::string::npos;
  }

  void TakeInclude(const std::string& text, int depth) {
    const bool isQuoted = text[0] == '\'' || text[0] == '"';
    if (!isQuoted) isInRecord_ = EndOfPath(text) == std::string::npos;
    if (!isInRecord_) Include(depth);
  }

  void TakePath(const std::string& line) {
    const DeckKeyword alone{"PATHS", "", place_, {{place_.line, line}}};
    for (const DeckRecord& record : RecordsOf(alone)) {
      if (record.size() >= 2) paths_.emplace_back("$" + record[0], record[1]);
    }
  }

  void Include(int depth) {
    std::string path;
    for (const DeckLine& line : keywords.back().lines) path += line.text;
    const DeckPlace place = keywords.back().place;
    keywords.pop_back();
    path = Plain(PathIn(path));
    if (path.empty() || path.find('$') != std::string::npos) {
      throw LinkFault(place.Text() + ": an INCLUDE needs a path, not '" + path + "'");
    }
    const DeckPlace here = place_;
    ReadFile(root_ / path, place.Text() + ": ", depth + 1);
    place_ = here;
  }

  static std::string PathIn(const std::string& text) {
    if (text[0] == '\'' || text[0] == '"') return text.substr(1, text.find(text[0], 1) - 1);
    return std::string(Trim(std::string_view(text).substr(0, EndOfPath(text))));
  }

  std::string Plain(std::string path) const {
    for (const auto& [name, folder] : paths_) {
      const size_t at = path.find(name);
      if (at != std::string::npos) path.replace(at, name.size(), folder);
    }
    std::ranges::replace(path, '\\', '/');
    return path;
  }

  std::filesystem::path root_;
  std::vector<std::pair<std::string, std::string>> paths_;
  DeckPlace place_;
  bool isInRecord_ = false;
  bool isOver_ = false;
};

/// "N*ITEM" as N and ITEM. False for more items than are within reason.
bool AppendItem(std::string_view token, DeckRecord& record) {
  size_t count = 0;
  const auto read = std::from_chars(token.data(), token.data() + token.size(), count);
  const size_t digits = static_cast<size_t>(read.ptr - token.data());
  if (read.ec != std::errc() || digits == token.size() || token[digits] != '*') {
    record.emplace_back(token);
    return true;
  }
  if (count > kMostRepeats - std::min(record.size(), kMostRepeats)) return false;
  record.insert(record.end(), count, std::string(token.substr(digits + 1)));
  return true;
}

/// Takes the first item off a line.
bool TakeItem(std::string_view& rest, DeckRecord& record) {
  const bool isQuoted = rest[0] == '\'' || rest[0] == '"';
  if (!isQuoted) {
    const size_t end = std::min(rest.find_first_of(" \t\r/"), rest.size());
    const std::string_view token = rest.substr(0, end);
    rest.remove_prefix(end);
    return AppendItem(token, record);
  }
  const size_t end = std::min(rest.find(rest[0], 1), rest.size());
  record.emplace_back(rest.substr(1, end - 1));
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return true;
}

}  // namespace

std::vector<DeckKeyword> ReadDeckKeywords(const std::filesystem::path& deck) {
  DeckReader reader(deck.parent_path());
  reader.ReadFile(deck, "", 0);
  return std::move(reader.keywords);
}

std::vector<DeckRecord> RecordsOf(const DeckKeyword& keyword) {
  std::vector<DeckRecord> records;
  DeckRecord record;
  for (const DeckLine& line : keyword.lines) {
    std::string_view rest = Trim(line.text);
    while (!rest.empty() && rest[0] != '/') {
      if (!TakeItem(rest, record)) {
        throw LinkFault(keyword.place.file + ":" + std::to_string(line.number) +
                        ": a deck can't repeat an item so often");
      }
      rest = Trim(rest);
    }
    if (rest.empty()) continue;
    records.push_back(std::move(record));
    record.clear();
  }
  return records;
}

double DeckNumber(const DeckKeyword& keyword, const std::string& item) {
  if (const auto number = ParseDeckNumber(item)) return *number;
  throw LinkFault(keyword.place.Text() + ": " + keyword.name + " holds '" + item +
                  "' for a number");
}

std::string ItemAt(const DeckRecord& record, size_t column) {
  return column < record.size() ? record[column] : "";
}

}  // namespace gantry::flowlink
