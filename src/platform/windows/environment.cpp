#include "platform/environment.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

std::optional<std::string> ReadEnvironment(const char* name, size_t capacity) {
  std::string value(capacity, '\0');
  SetLastError(ERROR_SUCCESS);
  const DWORD length = GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(capacity));
  if (length == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  if (length >= capacity) return std::nullopt;
  value.resize(length);
  return value;
}

}  // namespace gantry::platform
