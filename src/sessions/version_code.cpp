#include "sessions/version_code.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <string_view>

#include "client/connector_base.h"
#include "platform/files.h"
#include "text/number_text.h"

namespace gantry {
namespace {

bool IsLetter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || std::isalpha(byte) != 0;
}

bool IsNumeric(const std::string& token) {
  for (size_t i = 0; i < token.size(); ++i) {
    const char c = token[i];
    const bool isExponent = i > 0 && (c == 'E' || c == 'e');
    if (IsLetter(c) && !isExponent) return false;
    const bool isSign = c == '+' || c == '-' || c == '.';
    if (std::ispunct(static_cast<unsigned char>(c)) != 0 && !isSign) return false;
  }
  return true;
}

std::optional<int32_t> NumericCode(const std::string& token) {
  if (!IsNumeric(token)) return std::nullopt;
  const double code = ReadDouble(token) * 10.0;
  return static_cast<int32_t>(std::clamp(code, -2147483648.0, 2147483647.0));
}

/// A token such as v2017a, the release a or b of a year.
std::optional<int32_t> ReleaseCode(const std::string& token) {
  if (token.size() < 6 || std::tolower(static_cast<unsigned char>(token[0])) != 'v') {
    return std::nullopt;
  }
  int year = 0;
  const char* const end = token.data() + 5;
  if (std::from_chars(token.data() + 1, end, year).ptr != end) return std::nullopt;
  const int release = std::tolower(static_cast<unsigned char>(token[5])) - 'a' + 1;
  if (year <= 0 || release < 1 || release > 2) return std::nullopt;
  return year * 10 + release;
}

std::optional<int32_t> CodeOfToken(std::string token) {
  std::erase(token, ' ');
  if (token.empty()) return std::nullopt;
  if (const auto code = NumericCode(token)) return code;
  return ReleaseCode(token);
}

}  // namespace

int32_t VersionCodeFromPath(const std::string& path) {
  const std::string separators = {'\\', platform::kPathSeparator};
  for (size_t begin = 0; begin < path.size();) {
    const size_t end = std::min(path.find_first_of(separators, begin), path.size());
    if (const auto code = CodeOfToken(path.substr(begin, end - begin))) return *code;
    begin = end + 1;
  }
  return kMostRecentVersion;
}

}  // namespace gantry
