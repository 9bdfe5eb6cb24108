#include "support/isolation.h"

#include <cstdlib>

#include "platform/windows/win32.h"

namespace gantry::test {

void SetEnvironment(const char* name, const std::optional<std::string>& value) {
  ::_putenv_s(name, value.value_or("").c_str());
}

// The current user's root becomes a key of this process's own, which is volatile: it is gone with
// the Wine server or the session.
void IsolateSettings(const std::filesystem::path& folder) {
  const std::string name = "Software\\" + folder.filename().string();
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                      KEY_ALL_ACCESS, nullptr, &key, nullptr) == ERROR_SUCCESS) {
    RegOverridePredefKey(HKEY_CURRENT_USER, key);
    RegCloseKey(key);
  }
}

}  // namespace gantry::test
