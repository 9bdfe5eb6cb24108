#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

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
inline std::string Text(std::string_view text) {
  return Int(static_cast<int64_t>(text.size())) + std::string(text);
}

inline std::string TextList(const std::vector<std::string>& texts) {
  std::string bytes = Int(static_cast<int64_t>(texts.size()));
  for (const std::string& text : texts) bytes += Text(text);
  return bytes;
}

inline std::string DoubleList(const std::vector<double>& values) {
  std::string bytes = Int(static_cast<int64_t>(values.size()));
  for (const double value : values) bytes += Double(value);
  return bytes;
}

/// A frame with its length in front.
inline std::string Framed(const std::string& body) { return Text(body); }

/// A message of that routine: a request, or a reply to one.
inline std::string Message(uint32_t routine, const std::string& content) {
  return Framed(Int(routine) + content);
}
/// A request without parameters.
inline std::string BareRequest(uint32_t routine) { return Message(routine, Int(routine)); }

inline const std::string kAccepted = Int(0);
inline const std::string kRefused = Int(1);

}  // namespace gantry::test
