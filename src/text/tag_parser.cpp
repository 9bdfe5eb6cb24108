#include "text/tag_parser.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "boundary/error_text.h"
#include "platform/text.h"
#include "text/command_arguments.h"
#include "text/number_text.h"

namespace gantry {
namespace {

constexpr size_t kLongestKey = 255;

bool EndsToken(std::string_view path, size_t position, std::string_view stops) {
  return position == path.size() || stops.find(path[position]) != std::string_view::npos;
}

size_t SkipDots(std::string_view path, size_t position) {
  return std::min(path.find_first_not_of('.', position), path.size());
}

}  // namespace

TagParser::TagParser(std::string_view path, TagMode mode) : path_(path), mode_(mode) {}

TagParser TagParser::ForReading(std::string_view path, std::span<char> reply) {
  TagParser parser(path, TagMode::kRead);
  parser.reply_ = reply;
  return parser;
}

TagParser TagParser::ForWriting(std::string_view path, const char* value) {
  TagParser parser(path, TagMode::kWrite);
  if (value != nullptr) parser.value_ = value;
  return parser;
}

TagParser TagParser::ForCommand(std::string_view path) { return {path, TagMode::kCommand}; }

TagParser TagParser::ForAllocatedReply(std::string_view path, std::unique_ptr<char[]>& holder) {
  TagParser parser(path, TagMode::kRead);
  parser.valueHolder_ = &holder;
  return parser;
}

bool TagParser::MatchWord(std::string_view name) {
  const bool readOnly = name.starts_with('$');
  if (readOnly) name.remove_prefix(1);
  size_t begin = SkipDots(path_, position_);
  if (readOnly && begin < path_.size() && path_[begin] == '$') ++begin;
  // Only as much of the path is looked at as the name is long.
  const size_t end = begin + name.size();
  if (end > path_.size() || !EndsToken(path_, end, "(.[")) return false;
  if (!platform::EqualNoCase(std::string_view(path_).substr(begin, name.size()), name)) {
    return false;
  }
  position_ = end;
  protected_ = protected_ || readOnly;
  return true;
}

bool TagParser::IntProperty(int32_t& value, std::string_view name) {
  if (!MatchWord(name)) return false;
  if (MayWrite()) value = ReadInteger(value_);
  WriteReply(value);
  return true;
}

bool TagParser::BoolProperty(bool& value, std::string_view name) {
  int32_t number = value ? 1 : 0;
  if (!IntProperty(number, name)) return false;
  value = number != 0;
  return true;
}

bool TagParser::ShortProperty(int16_t& value, std::string_view name) {
  int32_t number = value;
  if (!IntProperty(number, name)) return false;
  using Limits = std::numeric_limits<int16_t>;
  value = static_cast<int16_t>(std::clamp<int32_t>(number, Limits::min(), Limits::max()));
  return true;
}

bool TagParser::DoubleProperty(double& value, std::string_view name) {
  if (!MatchWord(name)) return false;
  TransferDouble(value);
  return true;
}

bool TagParser::StringProperty(std::string& value, std::string_view name) {
  if (!MatchWord(name)) return false;
  if (MayWrite()) value = value_;
  WriteReply(value);
  return true;
}

bool TagParser::DoubleArrayItem(std::vector<double>& values, std::string_view name) {
  const size_t before = position_;
  if (!MatchWord(name)) return false;
  const int32_t index = ParseIndex();
  if (index < 0 || static_cast<size_t>(index) >= values.size()) {
    ErrorText = "Index out of range";
    position_ = before;
    return false;
  }
  TransferDouble(values[static_cast<size_t>(index)]);
  return true;
}

int32_t TagParser::ParseIndex() {
  const std::string_view rest = std::string_view(path_).substr(position_);
  if (!rest.starts_with('[')) return -1;
  const size_t close = rest.find_first_not_of("0123456789", 1);
  if (close == 1 || close == std::string_view::npos || rest[close] != ']') return -1;
  position_ += close + 1;
  return ReadInteger(rest.substr(1, close - 1));
}

std::string TagParser::ParseKey() {
  const std::string_view rest = std::string_view(path_).substr(position_);
  if (!rest.starts_with("[{")) return {};
  const size_t close = rest.find("}]", 2);
  if (close == std::string_view::npos) return {};
  position_ += close + 2;
  return std::string(rest.substr(2, std::min(close - 2, kLongestKey)));
}

std::string TagParser::NextWord() {
  const size_t begin = SkipDots(path_, position_);
  position_ = std::min(path_.find_first_of(".[", begin), path_.size());
  return path_.substr(begin, position_ - begin);
}

void TagParser::WriteReply(std::string_view text) {
  if (mode_ != TagMode::kRead) return;
  if (valueHolder_ == nullptr) return CopyBounded(reply_, text);
  *valueHolder_ = std::make_unique<char[]>(text.size() + 1);
  CopyBounded({valueHolder_->get(), text.size() + 1}, text);
}

void TagParser::WriteReply(int32_t number) { WriteReply(FormatInteger(number)); }

void TagParser::WriteReply(double number) { WriteReply(FormatDouble(number)); }

CommandMatch TagParser::MatchCommand(std::string_view name,
                                     CExtDataServerCmdArgumentCollection& arguments,
                                     int32_t minimum, int32_t maximum) {
  arguments.RemoveAll();
  if (!name.empty() && !MatchWord(name)) return CommandMatch::kOther;
  const size_t open = path_.find('(', position_);
  if (open == std::string::npos) {
    return minimum < 1 ? CommandMatch::kMatched : Malformed("Bad argument");
  }
  const auto most = static_cast<size_t>(std::max(maximum, 0));
  CommandArguments scan(path_, arguments, most);
  const std::optional<size_t> end = scan.Scan(open);
  if (!end) return Malformed("Syntax error");
  position_ = *end;
  const bool enough = minimum < 1 || scan.Count() >= static_cast<size_t>(minimum);
  if (!enough || scan.Count() > most) return Malformed("Bad number of arguments");
  return CommandMatch::kMatched;
}

CommandMatch TagParser::Malformed(const char* text) {
  ErrorText = text;
  return CommandMatch::kMalformed;
}

bool TagParser::ParseValueArray(std::span<double> target, std::string& error) const {
  std::string_view rest = value_;
  if (rest.empty()) {
    error = "Badly formed value array string";
    return false;
  }
  size_t count = 0;
  while (!rest.empty() && rest.front() != '}') {
    if (count == target.size()) {
      error = "Too many elements in array";
      return false;
    }
    const size_t end = std::min(rest.find_first_of("|}"), rest.size());
    target[count++] = ReadDouble(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  if (count < target.size()) error = "Too few elements in array";
  return count == target.size();
}

void TagParser::TransferDouble(double& value) {
  if (MayWrite()) value = ReadDouble(value_);
  WriteReply(value);
}

}  // namespace gantry
