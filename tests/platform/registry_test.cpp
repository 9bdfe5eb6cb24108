#include "platform/registry.h"

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::platform {
namespace {

TEST(Registry, KeepsWhatIsWrittenUnderAKeyWhoeverOpensIt) {
  const test::TestFolder folder;
  std::string bytes;
  for (int c = 1; c < 256; ++c) bytes += static_cast<char>(c);
  const auto key = RegistryKey::Create(kCurrentUser, "Software\\Acme");
  const auto again = RegistryKey::Create(~uintptr_t{0} << 32 | kCurrentUser, "SOFTWARE\\acme\\");
  ASSERT_NE(key, nullptr);
  ASSERT_NE(again, nullptr);
  EXPECT_FALSE(key->ReadText("Text"));
  for (const std::string& text :
       {std::string(), std::string("\\"), std::string("a\r\nb\\"), bytes, std::string(9000, '"')}) {
    ASSERT_TRUE(key->WriteText("Text", text));
    EXPECT_EQ(again->ReadText("TEXT"), text);
  }
  EXPECT_FALSE(key->ReadNumber("Text")) << "of another type";
  EXPECT_TRUE(key->WriteNumber("Text", 0xFFFFFFFF));
  EXPECT_EQ(again->ReadNumber("Text"), 0xFFFFFFFFu);
  EXPECT_FALSE(key->ReadText("Text"));
}

}  // namespace
}  // namespace gantry::platform
