#include "support/isolation.h"

#include <cstdlib>

#include "platform/windows/win32.h"

namespace gantry::test {

namespace {

/// The key below which those of this process stand.
std::string OwnKey() { return "Software\\Gantry tests " + std::to_string(GetCurrentProcessId()); }

/// Gives the current user's root back when the process ends, and drops what stood in its place.
struct Cleaner {
  ~Cleaner() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegDeleteTreeA(HKEY_CURRENT_USER, OwnKey().c_str());
  }
} cleaner;

}  // namespace

void SetEnvironment(const char* name, const std::optional<std::string>& value) {
  ::_putenv_s(name, value.value_or("").c_str());
}

// A key of the test's own takes the place of the current user's root in this process.
void IsolateSettings(const std::filesystem::path& folder) {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  const std::string name = OwnKey() + "\\" + folder.filename().string();
  HKEY key = nullptr;
  if (RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                      nullptr) == ERROR_SUCCESS) {
    RegOverridePredefKey(HKEY_CURRENT_USER, key);
    RegCloseKey(key);
  }
}

}  // namespace gantry::test
