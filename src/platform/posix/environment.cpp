#include "platform/environment.h"

#include <cstdlib>

namespace gantry::platform {

std::optional<std::string> ReadEnvironment(const char* name, size_t capacity) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  std::string text = value;
  if (text.size() >= capacity) return std::nullopt;
  return text;
}

void WriteEnvironment(const char* name, const std::string& value) {
  ::setenv(name, value.c_str(), 1);
}

}  // namespace gantry::platform
