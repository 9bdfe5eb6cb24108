#pragma once

#include <cstdint>
#include <cstring>
#include <regex>
#include <string>
#include <string_view>

namespace gantry::test {

// The elements of remote messages as bytes, composed apart from the code under test.

template <class T>
std::string Raw(T value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

inline std::string Int(int64_t value) { return Raw(static_cast<uint32_t>(value)); }
inline std::string Double(double value) { return Raw(value); }
/// With its length in front, as a frame has it too.
inline std::string Text(std::string_view text) {
  return Int(static_cast<int64_t>(text.size())) + std::string(text);
}

/// Elements that are written down: 'a text', an integer 7, a double 7.5, a byte b7, and several in
/// brackets with their length in front.
inline std::string Elements(const std::string& line) {
  static const std::regex kElement(R"('([^']*)'|b(\d+)|(-?\d+\.\d+)|(-?\d+)|\[([^\]]*)\])");
  std::string bytes;
  for (std::sregex_iterator at(line.begin(), line.end(), kElement), end; at != end; ++at) {
    const std::smatch& found = *at;
    if (found[1].matched) bytes += Text(found.str(1));
    if (found[2].matched) bytes += static_cast<char>(std::stoi(found[2]));
    if (found[3].matched) bytes += Double(std::stod(found[3]));
    if (found[4].matched) bytes += Int(std::stoll(found[4]));
    if (found[5].matched) bytes += Text(Elements(found.str(5)));
  }
  return bytes;
}

/// A message of that routine: a request, or a reply to one.
inline std::string Message(uint32_t routine, const std::string& content) {
  return Text(Int(routine) + content);
}

inline const std::string kAccepted = Int(0);

}  // namespace gantry::test
