#include "platform/registry.h"

#include <gtest/gtest.h>

#include "platform/windows/win32.h"
//
#include <aclapi.h>

#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

constexpr char kPath[] = "Software\\Gantry test";

/// A key as other programs see it.
class RawKey {
 public:
  explicit RawKey(const std::string& path, REGSAM access = KEY_ALL_ACCESS) {
    RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, access, nullptr, &key_,
                    nullptr);
  }
  ~RawKey() { RegCloseKey(key_); }
  RawKey(const RawKey&) = delete;
  RawKey& operator=(const RawKey&) = delete;

  bool Set(const char* name, DWORD type, const std::string& bytes) const {
    return RegSetValueExA(key_, name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                          static_cast<DWORD>(bytes.size())) == ERROR_SUCCESS;
  }

  /// From here on nobody may write.
  bool MakeReadOnly() const {
    char everyone[] = "EVERYONE";
    EXPLICIT_ACCESSA read = {};
    BuildExplicitAccessWithNameA(&read, everyone, KEY_READ | WRITE_DAC, SET_ACCESS, NO_INHERITANCE);
    PACL list = nullptr;
    if (SetEntriesInAclA(1, &read, nullptr, &list) != ERROR_SUCCESS) return false;
    const DWORD outcome = SetSecurityInfo(key_, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr,
                                          nullptr, list, nullptr);
    LocalFree(list);
    return outcome == ERROR_SUCCESS;
  }

 private:
  HKEY key_ = nullptr;
};

TEST(WindowsRegistry, AValueOfAnotherTypeOrSizeReadsAsAbsent) {
  const test::TestFolder folder;
  const auto key = RegistryKey::Create(kCurrentUser, kPath);
  const RawKey raw(kPath);
  raw.Set("Text", REG_EXPAND_SZ, std::string("%TEMP%\0", 7));
  raw.Set("Short", REG_DWORD, "12");
  raw.Set("Long", REG_DWORD, "12345678");
  raw.Set("Open", REG_SZ, "no end");
  raw.Set("Empty", REG_SZ, "");
  raw.Set("Broken", REG_SZ, std::string("a\0b", 4));
  EXPECT_FALSE(key->ReadText("Text"));
  EXPECT_FALSE(key->ReadNumber("Short"));
  EXPECT_FALSE(key->ReadNumber("Long"));
  EXPECT_EQ(key->ReadText("Open"), "no end");
  EXPECT_EQ(key->ReadText("Empty"), "");
  EXPECT_EQ(key->ReadText("Broken"), "a");
}

TEST(WindowsRegistry, AKeyThatMayNotBeWrittenIsRefusedAndLeavesTheDefaults) {
  const test::TestFolder folder;
  const RawKey raw(kRegistryKey);
  raw.Set("StartPort", REG_DWORD, std::string("\x01\0\0\0", 4));
  ASSERT_TRUE(raw.MakeReadOnly());
  EXPECT_EQ(RegistryKey::Create(kCurrentUser, kRegistryKey), nullptr);
  CIXConfig config;
  EXPECT_EQ(config.StartPort, 9001);
  config.Save();
}

}  // namespace
}  // namespace gantry::platform
