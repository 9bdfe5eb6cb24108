#include "flowlink/flow_log.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace gantry::flowlink {

namespace {

constexpr size_t kLongest = 300;
constexpr std::string_view kMarks[] = {"Error", "Problem:", "threw an exception"};

bool Begins(const std::string& line) {
  return std::ranges::any_of(
      kMarks, [&](std::string_view mark) { return line.find(mark) != std::string::npos; });
}

/// flow says its reason as an error, and once more as the exception that ends it.
bool IsRepeated(const std::string& line, const std::string& reason) {
  return line.find("threw an exception") != std::string::npos && !reason.empty();
}

/// Without the words and the place in flow's own source by which it tells of an exception.
std::string Plain(const std::string& line) {
  constexpr std::string_view kException = "Program threw an exception: ";
  size_t begin = line.starts_with(kException) ? kException.size() : 0;
  const size_t place = line.find("] ", begin);
  if (line.substr(begin).starts_with("[") && place != std::string::npos) begin = place + 2;
  return line.substr(begin);
}

}  // namespace

std::string LastErrorIn(const std::string& text) {
  std::istringstream lines(text);
  std::string last;
  bool isWithin = false;
  for (std::string line; std::getline(lines, line);) {
    if (!isWithin && Begins(line)) last.clear();
    isWithin = !line.empty() && (isWithin || Begins(line));
    if (isWithin && !IsRepeated(line, last)) last += (last.empty() ? "" : " ") + Plain(line);
  }
  return last.substr(0, kLongest);
}

std::optional<size_t> LineOfError(const std::string& error, const std::string& deckText) {
  static const std::regex kPlace("[Ii]n \\S+\\.DATA,? line ([0-9]+)");
  static const std::regex kUnknown("Unknown keyword: (\\w+)");
  std::smatch found;
  if (std::regex_search(error, found, kPlace)) return std::stoul(found[1]);
  if (!std::regex_search(error, found, kUnknown)) return std::nullopt;
  std::istringstream lines(deckText);
  std::string line;
  for (size_t number = 1; std::getline(lines, line); ++number) {
    if (line == found[1]) return number;
  }
  return std::nullopt;
}

}  // namespace gantry::flowlink
