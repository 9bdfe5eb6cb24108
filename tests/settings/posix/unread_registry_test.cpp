#include <gtest/gtest.h>

#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

TEST(UnreadRegistry, IsNotWrittenOver) {
  const TestFolder folder;
  const auto file = folder / "XDG_CONFIG_HOME/gantry/registry.reg";
  std::filesystem::create_directories(file);  // which no program reads as a file
  {
    const CIXConfig config;
    std::filesystem::remove(file);
  }
  EXPECT_FALSE(std::filesystem::exists(file));
  { const CIXConfig config; }
  EXPECT_TRUE(std::filesystem::exists(file)) << "one that there is none of isn't unread";
}

}  // namespace
}  // namespace gantry::test
