#include "session.h"

#include <algorithm>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "run_program.h"
#include "support/free_ports.h"
#include "support/play.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;
using gantry::test::Split;

fs::path PathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

/// The first words of the lines that end what the lines before them have told of.
const std::set<std::string> kBegins = {"$", "=", "copy", "write", "change"};

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  bool isQuoted = false;
  for (const std::string& part : Split(text, "'")) {
    if (isQuoted) words.push_back(part);
    std::istringstream plain(isQuoted ? "" : part);
    for (std::string word; plain >> word;) words.push_back(word);
    isQuoted = !isQuoted;
  }
  return words;
}

/// Puts a part in the place of the first of another; false where there is none.
bool Replace(std::string& text, const std::string& part, const std::string& replacement) {
  const size_t place = text.find(part);
  if (place == std::string::npos) return false;
  text.replace(place, part.size(), replacement);
  return true;
}

/// Whether the parts of a pattern stand in the line one after the other, the first at its start and
/// the last at its end.
bool Fits(const std::string& line, const std::string& pattern) {
  const std::vector<std::string> parts = Split(pattern, "...");
  if (parts.size() == 1) return line == pattern;
  if (!line.starts_with(parts.front())) return false;
  size_t at = parts.front().size();
  for (size_t i = 1; i + 1 < parts.size(); ++i) {
    at = line.find(parts[i], at);
    if (at == std::string::npos) return false;
    at += parts[i].size();
  }
  return line.size() >= at + parts.back().size() && line.ends_with(parts.back());
}

class Player {
 public:
  void Play(const fs::path& file) {
    std::istringstream lines(folder_.Read(file));
    for (std::string line; std::getline(lines, line);) Take(line);
    Finish();
  }

 private:
  void Take(const std::string& line) {
    const std::string head = line.substr(0, line.find(' '));
    const std::string rest = line.substr(std::min(line.size(), head.size() + 1));
    if (line.starts_with("    ")) written_ += line.substr(4) + "\n";
    if (kBegins.contains(head)) Finish();
    if (head == "$") Run(rest);
    if (head == "=") Look(Split(rest, " | "));
    if (head == "?") status_ = std::stoi(rest);
    if (head == ">") output_.push_back(rest);
    if (head == "!") errors_.push_back(rest);
    if (head == "write") file_ = rest;
    if (head == "copy") fs::copy(fs::path(ExampleCase(rest)).parent_path(), folder_ / rest);
    if (head == "change") Change(Split(rest, " | "));
  }

  fs::path Path(const std::string& name) const { return folder_.Path() / PathOf(name); }

  void Change(std::vector<std::string> words) const {
    if (words.size() == 2) return fs::rename(Path(words[0]), Path(words[1]));
    std::string text = folder_.Read(Path(words[0]));
    for (std::string& word : words) {
      while (Replace(word, "\\n", "\n")) {
      }
    }
    EXPECT_TRUE(Replace(text, words[1], words[2])) << words[0] << " holds no " << words[1];
    folder_.Write(words[0], text);
  }

  /// "FILE ROWS", or "FILE FIRST-LAST | COLUMN + COLUMN | LOW..HIGH".
  void Look(const std::vector<std::string>& words) const {
    std::istringstream place(words[0]);
    std::string file;
    size_t first = 0, last = 0;
    place >> file >> first;
    if (!(place.ignore() >> last)) last = first;
    const Table table(Path(file));
    if (words.size() == 1) {
      EXPECT_EQ(table.Rows(), first) << file;
      return;
    }
    for (size_t row = first; row <= last; ++row) {
      SCOPED_TRACE(file + ", " + words[1] + " of row " + std::to_string(row));
      Compare(table, row - 1, Split(words[1], " + "), Split(words[2], ".."));
    }
  }

  static void Compare(const Table& table, size_t row, const std::vector<std::string>& columns,
                      const std::vector<std::string>& bounds) {
    if (bounds.size() == 1) {
      EXPECT_EQ(table.Text(row, columns[0]), bounds[0]);
      return;
    }
    double sum = 0;
    for (const std::string& column : columns) sum += table.Number(row, column);
    EXPECT_GE(sum, std::stod(bounds[0]));
    EXPECT_LE(sum, std::stod(bounds[1]));
  }

  void Run(const std::string& line) {
    command_ = line;
    std::vector<std::string> words = Words(line);
    for (std::string& word : words) {
      Replace(word, "{port}", std::to_string(gantry::test::FreePorts()));
      Replace(word, "{examples}", EXAMPLES);
      Replace(word, "{module}", FIELDRUN_MODULE);
      for (const char* program : {"fieldrun", "runfactory", "flowlink", "tanksim"}) {
        Replace(word, "{" + std::string(program) + "}", ProgramOf(program));
      }
    }
    const std::string program = words.front();
    words.erase(words.begin());
    if (program == "cat") {
      outcome_ = {fs::exists(Path(words[0])) ? 0 : 1, folder_.Read(Path(words[0])), ""};
    } else {
      outcome_ = RunInFolder(folder_, program, words);
    }
  }

  /// Writes the file, or judges the run, that the lines since the last one tell of.
  void Finish() {
    if (!file_.empty()) folder_.Write(file_, written_);
    if (!command_.empty()) Judge();
    file_ = written_ = command_ = "";
    status_ = 0;
    output_ = errors_ = {};
  }

  void Judge() const {
    SCOPED_TRACE("$ " + command_);
    EXPECT_EQ(outcome_.status, status_) << outcome_.err;
    ExpectLines(outcome_.out, output_);
    ExpectLines(outcome_.err, errors_);
    EXPECT_TRUE(!errors_.empty() || outcome_.err.empty()) << outcome_.err;
  }

  static void ExpectLines(const std::string& text, const std::vector<std::string>& patterns) {
    std::istringstream lines(text);
    for (const std::string& pattern : patterns) {
      std::string line;
      while (std::getline(lines, line) && !Fits(line, pattern)) {
      }
      EXPECT_TRUE(lines) << "no line \"" << pattern << "\" in\n" << text;
    }
  }

  const gantry::test::TestFolder folder_;
  std::string file_;
  std::string written_;
  std::string command_;
  Outcome outcome_;
  int status_ = 0;
  std::vector<std::string> output_;
  std::vector<std::string> errors_;
};

}  // namespace

void PlaySession(const fs::path& file) { Player().Play(file); }

std::vector<std::string> SessionsIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".session") names.push_back(entry.path().stem().string());
  }
  std::ranges::sort(names);
  return names;
}

}  // namespace gantry::fieldrun::test
