#include <filesystem>
#include <thread>

#include <gtest/gtest.h>

#include "platform/dynamic_library.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/module_state.h"
#include "platform/user.h"
#include "support/isolation.h"

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
