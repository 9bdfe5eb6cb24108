#include <gtest/gtest.h>

#include "settings/link_settings.h"
#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

TEST(RegistryFile, HoldsTheConfigurationAndTheLastCaseByteForByte) {
  const TestFolder folder;
  {
    CIXConfig config;
    config.CmdLine = "--log \"C:\\a b\"";
    config.UserProperties.push_back(std::make_unique<CIXUserProperty>());
    config.UserProperties[0]->Property = "OPR";
    config.UserProperties[0]->DisplayName = "Oil rate";
    config.UserProperties[0]->UnitFamily = 0;
  }
  LinkSettings settings;
  settings.FileName = "/cases/odeh.afi";
  settings.SaveToRegistry();
  const char* lines[] = {
      "REGEDIT4",
      "",
      R"([HKEY_CURRENT_USER\Software\Orvale\Tessel\ExtensionDlls100_64\Intersect])",
      R"("SimExecutable"="")",
      R"("MPIExecutable"="")",
      R"("CmdLine"="--log \"C:\\a b\"")",
      R"("StartPort"=dword:00002329)",
      R"("EndPort"=dword:0000238d)",
      R"("UserProperties"="OPR|Oil rate|0|1~")",
      R"("Module"="")",
      R"("Dataset"="/cases/odeh.afi")",
      R"("Parallel"=dword:00000001)",
      R"("HeadNode"="")",
      R"("HeadNodePort"=dword:00001e61)",
      R"("LinuxIXVersion"=dword:000186a0)",
  };
  std::string expected;
  for (const char* line : lines) expected += std::string(line) + "\r\n";
  EXPECT_EQ(TestFolder::Read(folder / "XDG_CONFIG_HOME/gantry/registry.reg"), expected);
}

}  // namespace
}  // namespace gantry::test
