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

}  // namespace gantry::platform
