#include "platform/user.h"

#include "platform/windows/win32.h"

namespace gantry::platform {

std::optional<std::string> LogInName() {
  char name[257];
  DWORD length = sizeof name;
  if (GetUserNameA(name, &length) == 0) return std::nullopt;
  return std::string(name);
}

}  // namespace gantry::platform
