#include "host/module_api.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

std::string FailureOfLoading(const std::string& path) {
  try {
    ModuleApi::Load(path);
    return "loaded";
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
}

TEST(ModuleApi, NamesWhatALibraryLacks) {
  EXPECT_EQ(FailureOfLoading(OTHER_LIBRARY),
            "The library " OTHER_LIBRARY
            " is no driver module: it lacks ExtIdentify, ExtCreateInstance, ExtDestroyInstance, "
            "ExtCmd, ExtConfigure, ExtCopyConfigure, ExtHelp, ExtConnectToApp, ExtStartApp, "
            "ExtStopApp, ExtEquipXml, ExtCreateUnit");
  const std::string failure = FailureOfLoading("/no/such/libIntersect.so");
  EXPECT_TRUE(failure.starts_with("The module /no/such/libIntersect.so can't be loaded: "))
      << failure;
}

/// The registry file of this test.
std::string Registry(const test::TestFolder& folder) {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
    if (entry.path().filename() == "registry.reg") return test::TestFolder::Read(entry.path());
  }
  return {};
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(ModuleApi, UnloadsTheModuleWithItsConfigurationSaved) {
  const test::TestFolder folder;
  auto module = ModuleApi::Load(MODULE);
  EXPECT_EQ(module->ExtCreateUnit(0, std::vector<char>(80).data()), 1);
  EXPECT_FALSE(Holds(Registry(folder), "StartPort"));
  module.reset();
  EXPECT_TRUE(Holds(Registry(folder), "StartPort"));
}

TEST(ModuleApi, CopiesAConfigurationFromAnotherPlace) {
  const test::TestFolder folder;
  const auto module = ModuleApi::Load(MODULE);
  module->ExtCopyConfigure(reinterpret_cast<void*>(uintptr_t{0x80000001}), "Software\\Other");
  EXPECT_TRUE(Holds(Registry(folder), "ExtensionDlls100_64\\Intersect]"));
  EXPECT_TRUE(Holds(Registry(folder), "\"StartPort\""));
}

}  // namespace
}  // namespace gantry::fieldrun
