#include "platform/environment.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

std::optional<std::string> ReadEnvironment(const char* name, size_t capacity) {
  SetLastError(ERROR_SUCCESS);
  const DWORD size = GetEnvironmentVariableA(name, nullptr, 0);  // with its terminator
  if (size == 0 && GetLastError() != ERROR_SUCCESS) return std::nullopt;
  if (size > capacity) return std::nullopt;
  std::string value(size, '\0');
  const DWORD length = GetEnvironmentVariableA(name, value.data(), size);
  if (length > size) return std::nullopt;  // it has grown meanwhile
  value.resize(length);
  return value;
}

void WriteEnvironment(const char* name, const std::string& value) {
  SetEnvironmentVariableA(name, value.c_str());
}

}  // namespace gantry::platform
