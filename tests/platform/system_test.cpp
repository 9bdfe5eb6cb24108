// The services that take no more than a test or two each.

#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "platform/dynamic_library.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/module_state.h"
#include "platform/named_mutex.h"
#include "platform/registry.h"
#include "platform/user.h"
#include "support/isolation.h"
#include "support/test_folder.h"

namespace gantry::platform {
namespace {

TEST(DynamicLibrary, ALibraryThatCannotBeOpenedTellsWhy) {
  std::string reason;
  EXPECT_EQ(DynamicLibrary::Open(ModuleFolder() + LibraryFileName("NoSuchThing"), &reason),
            nullptr);
  EXPECT_NE(reason, "");
}

TEST(DynamicLibrary, TheModulesFolderIsThatOfTheBinaryWhereverTheProcessGoes) {
  const std::string folder = ModuleFolder();
  ASSERT_TRUE(folder.ends_with(kPathSeparator));
  EXPECT_TRUE(std::filesystem::path(folder).is_absolute());
  bool found = false;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    found = found || entry.path().stem() == "platform_tests";
  }
  EXPECT_TRUE(found) << folder;
}

TEST(Environment, AValueThatFillsTheReadersBufferCountsAsNotSet) {
  const test::ScopedVariable variable("GANTRY_TEST", "fifteen letters");
  EXPECT_EQ(ReadEnvironment("GANTRY_TEST", 16), "fifteen letters");
  EXPECT_FALSE(ReadEnvironment("GANTRY_TEST", 15));
  EXPECT_FALSE(ReadEnvironment("GANTRY_NO_SUCH_VARIABLE", 16));
}

TEST(Mutex, IsHeldForItsLifeAndSeenAsHeldByItsOwnProcess) {
  using Outcome = NamedMutex::Outcome;
  auto first = NamedMutex::TryAcquire("GantryTest0");
  EXPECT_EQ(first.outcome, Outcome::kTaken);
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest0").outcome, Outcome::kHeldElsewhere);
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest1").outcome, Outcome::kTaken);
  first.mutex.reset();
  EXPECT_EQ(NamedMutex::TryAcquire("GantryTest0").outcome, Outcome::kTaken);
}

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

TEST(User, HasALogInName) { EXPECT_NE(LogInName().value_or(""), ""); }

TEST(ModuleState, NestsForEachThreadAlone) {
  const ModuleStateScope outer;
  {
    const ModuleStateScope inner;
    EXPECT_EQ(ModuleStateScope::Depth(), 2);
    std::thread([] { EXPECT_EQ(ModuleStateScope::Depth(), 0); }).join();
  }
  EXPECT_EQ(ModuleStateScope::Depth(), 1);
}

}  // namespace
}  // namespace gantry::platform
