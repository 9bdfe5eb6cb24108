#include "fieldrun/case/case_writer.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <vector>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using Lines = std::vector<std::string>;

Lines SplitLines(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string JoinLines(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

/// The mark that some editors put ahead of a text counts as a blank.
std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\r\xEF\xBB\xBF");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool IsHeading(const std::string& line) { return Trimmed(line).starts_with('['); }

bool IsSimulatorHeading(const std::string& line) {
  const std::string heading = Trimmed(line.substr(0, line.find('#')));
  return heading.size() > 2 && heading.ends_with(']') &&
         Trimmed(heading.substr(1, heading.size() - 2)) == "simulator";
}

/// The key that a line of a section sets; empty when it sets none.
std::string KeyOf(const std::string& line) {
  const size_t equals = line.find('=');
  if (equals == std::string::npos || Trimmed(line).starts_with('#')) return {};
  return Trimmed(line.substr(0, equals));
}

/// Where a comment begins behind the value of a line: a "#" outside quotes.
size_t CommentOf(const std::string& line) {
  char quote = 0;
  for (size_t i = line.find('='); i < line.size(); ++i) {
    if (quote == '"' && line[i] == '\\') {
      ++i;
    } else if (quote != 0) {
      if (line[i] == quote) quote = 0;
    } else if (line[i] == '"' || line[i] == '\'') {
      quote = line[i];
    } else if (line[i] == '#') {
      return i;
    }
  }
  return line.size();
}

std::string WithValue(const std::string& line, const std::string& value) {
  const size_t comment = CommentOf(line);
  const std::string tail = comment < line.size() ? "  " + line.substr(comment) : "";
  return line.substr(0, line.find('=') + 1) + " " + value + tail;
}

}  // namespace

std::string TomlText(const std::string& text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    if (static_cast<unsigned char>(c) < 0x20) {
      result += fmt::format("\\u{:04X}", static_cast<unsigned>(c));
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string WithSimulatorKeys(const std::string& text,
                              const std::map<std::string, std::string>& values) {
  Lines lines = SplitLines(text);
  auto begin = std::ranges::find_if(lines, IsSimulatorHeading);
  if (begin == lines.end()) begin = lines.insert(lines.end(), "[simulator]");
  std::map<std::string, std::string> missing = values;
  auto last = begin;  // the section's last line that says something
  for (auto line = begin + 1; line != lines.end() && !IsHeading(*line); ++line) {
    const auto found = missing.find(KeyOf(*line));
    if (found != missing.end()) {
      *line = WithValue(*line, found->second);
      missing.erase(found);
    }
    if (!KeyOf(*line).empty()) last = line;
  }
  Lines added;
  for (const auto& [key, value] : missing) added.push_back(fmt::format("{} = {}", key, value));
  lines.insert(last + 1, added.begin(), added.end());
  return JoinLines(lines);
}

std::string WithControl(const std::string& text, const CaseModel& caseModel,
                        const std::string& control) {
  Lines lines = SplitLines(text);
  // From the last well to the first: a line that comes in moves none that is still to be found.
  for (auto spec = caseModel.wells.rbegin(); spec != caseModel.wells.rend(); ++spec) {
    const WellSpec& well = *spec;
    if (!well.IsProducer()) continue;
    const bool isThere = well.keyLines.contains("control");
    const char* const key = isThere ? "control" : "kind";
    const auto number = static_cast<size_t>(well.LineOf(key));
    if (number == 0 || number > lines.size() || KeyOf(lines[number - 1]) != key) {
      caseModel.Fail(well.LineOf(key), "a control mode can only be written to a line of its own");
    }
    const auto line = lines.begin() + static_cast<Lines::difference_type>(number) - 1;
    if (isThere) {
      *line = WithValue(*line, control);
    } else {
      lines.insert(line + 1, "control = " + control);
    }
  }
  return JoinLines(lines);
}

}  // namespace gantry::fieldrun
