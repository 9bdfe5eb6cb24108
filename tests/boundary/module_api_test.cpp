#include "fieldrun/driver/module_api.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "settings/machine_config.h"
#include "support/raised.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

TEST(ModuleApi, NamesWhatALibraryLacks) {
  EXPECT_EQ(gantry::test::Raised([] { ModuleApi::Load(OTHER_LIBRARY); }),
            "runtime_error: The library " OTHER_LIBRARY
            " is no driver module: it lacks ExtIdentify, ExtCreateInstance, ExtDestroyInstance, "
            "ExtCmd, ExtConfigure, ExtCopyConfigure, ExtHelp, ExtConnectToApp, ExtStartApp, "
            "ExtStopApp, ExtEquipXml, ExtCreateUnit");
  const std::string failure =
      gantry::test::Raised([] { ModuleApi::Load("/no/such/libIntersect.so"); });
  EXPECT_NE(failure.find("The module /no/such/libIntersect.so can't be loaded: "),
            std::string::npos)
      << failure;
}

/// The first port, as the registry holds it.
std::optional<uint32_t> StoredPort() {
  return platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey)
      ->ReadNumber("StartPort");
}

TEST(ModuleApi, UnloadsTheModuleWithItsConfigurationSaved) {
  const test::TestFolder folder;
  auto module = ModuleApi::Load(MODULE);
  EXPECT_EQ(module->ExtCreateUnit(0, std::vector<char>(80).data()), 1);
  EXPECT_EQ(StoredPort(), std::nullopt);
  module.reset();
  EXPECT_EQ(StoredPort(), 9001u);
}

}  // namespace
}  // namespace gantry::fieldrun
