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

/// A value as other programs write it.
void Put(const char* name, DWORD type, const std::string& bytes, const char* path = kPath) {
  RegSetKeyValueA(HKEY_CURRENT_USER, path, name, type, bytes.data(),
                  static_cast<DWORD>(bytes.size()));
}

/// From here on nobody may write to the key.
bool MakeReadOnly(const char* path) {
  HKEY key = nullptr;
  RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_ALL_ACCESS, &key);
  char everyone[] = "EVERYONE";
  EXPLICIT_ACCESSA read = {};
  BuildExplicitAccessWithNameA(&read, everyone, KEY_READ | WRITE_DAC, SET_ACCESS, NO_INHERITANCE);
  PACL list = nullptr;
  if (SetEntriesInAclA(1, &read, nullptr, &list) != ERROR_SUCCESS) return false;
  const DWORD outcome = SetSecurityInfo(key, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, list, nullptr);
  LocalFree(list);
  return RegCloseKey(key) == ERROR_SUCCESS && outcome == ERROR_SUCCESS;
}

TEST(WindowsRegistry, AValueOfAnotherTypeOrSizeReadsAsAbsent) {
  const test::TestFolder folder;
  const auto key = RegistryKey::Create(kCurrentUser, kPath);
  Put("Text", REG_EXPAND_SZ, std::string("%TEMP%\0", 7));
  Put("Short", REG_DWORD, "12");
  Put("Long", REG_DWORD, "12345678");
  Put("Open", REG_SZ, "no end");
  Put("Empty", REG_SZ, "");
  Put("Broken", REG_SZ, std::string("a\0b", 4));
  EXPECT_FALSE(key->ReadText("Text"));
  EXPECT_FALSE(key->ReadNumber("Short"));
  EXPECT_FALSE(key->ReadNumber("Long"));
  EXPECT_EQ(key->ReadText("Open"), "no end");
  EXPECT_EQ(key->ReadText("Empty"), "");
  EXPECT_EQ(key->ReadText("Broken"), "a");
}

TEST(WindowsRegistry, AKeyThatMayNotBeWrittenIsRefusedAndLeavesTheDefaults) {
  const test::TestFolder folder;
  Put("StartPort", REG_DWORD, std::string("\x01\0\0\0", 4), kRegistryKey);
  ASSERT_TRUE(MakeReadOnly(kRegistryKey));
  EXPECT_EQ(RegistryKey::Create(kCurrentUser, kRegistryKey), nullptr);
  CIXConfig config;
  EXPECT_EQ(config.StartPort, 9001);
  config.Save();
}

}  // namespace
}  // namespace gantry::platform
