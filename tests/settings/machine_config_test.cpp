#include "settings/machine_config.h"

#include <thread>

#include <gtest/gtest.h>

#include "client/unit_converter.h"
#include "platform/registry.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

using platform::RegistryKey;

class MachineConfig : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Key() {
    return RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  }

  TestFolder folder_;
};

TEST_F(MachineConfig, IsSavedWhenItGoes) {
  const std::string program = folder_.Write("ix", "").string();
  {
    CIXConfig config;
    config.SimExecutable = program;
    config.CmdLine = "-x \"y\"";
    config.EndPort = 9002;
    config.UserProperties.push_back(std::make_unique<CIXUserProperty>(
        CIXUserProperty{.Property = "OPR", .SimulatorItem = {}, .DisplayName = "Oil rate"}));
    config.UserProperties.push_back(
        std::make_unique<CIXUserProperty>(CIXUserProperty{.Property = "XMF",
                                                          .SimulatorItem = {},
                                                          .DisplayName = "X",
                                                          .UnitFamily = 3,
                                                          .IsScalar = 0}));
  }
  EXPECT_EQ(Key()->ReadText("UserProperties"), "OPR|Oil rate|-1|1~XMF|X|3|0~");
  const CIXConfig config;
  EXPECT_EQ(config.SimExecutable, program);
  EXPECT_EQ(config.CmdLine, "-x \"y\"");
  EXPECT_EQ(config.StartPort, 9001);
  EXPECT_EQ(config.EndPort, 9002);
  ASSERT_EQ(config.UserProperties.size(), 2u);
  EXPECT_EQ(config.UserProperties[0]->UnitCode, 60051u);
  EXPECT_EQ(config.UserProperties[1]->UnitCode, UnitFamilyTable[3].userCode);
}

TEST_F(MachineConfig, IsReadWholeByAStartWhileTheHostCopiesAnother) {
  const std::vector<std::string> places = {"Software\\A", "Software\\B"};
  for (const std::string& place : places) {
    const auto key = RegistryKey::Create(platform::kCurrentUser, place);
    key->WriteText("CmdLine", std::string(1000, place.back()));
    key->WriteNumber("StartPort", static_cast<uint32_t>(place.back()));
  }
  CIXConfig config(platform::kCurrentUser, places[0]);
  std::jthread host([&](const std::stop_token& ended) {
    for (size_t i = 0; !ended.stop_requested(); ++i) {
      config.Load(platform::kCurrentUser, places[i % places.size()]);
    }
  });
  for (int i = 0; i < 2000; ++i) {
    const LaunchSettings seen = config.ForLaunch();
    ASSERT_EQ(seen.CmdLine, std::string(1000, static_cast<char>(seen.StartPort)));
  }
}

TEST_F(MachineConfig, AnExecutableThatHasGoneDisappears) {
  Key()->WriteText("SimExecutable", (folder_ / "gone").string());
  Key()->WriteText("MPIExecutable", folder_.Path().string());
  { const CIXConfig config; }
  EXPECT_EQ(Key()->ReadText("SimExecutable"), "");
  EXPECT_EQ(Key()->ReadText("MPIExecutable"), "") << "a folder is no executable";
}

TEST_F(MachineConfig, ReadsTheListOfUserPropertiesLeniently) {
  struct Row {
    const char* list;
    std::vector<std::string> properties;  ///< property, name, family, scalar
  };
  const Row rows[] = {
      {"A|B|3~", {"A,B,3,1"}},
      {"A|B|3|0", {"A,B,3,0"}},
      {"A|B~", {}},
      {"A||3|1~", {"A,3,1,1"}},
      {"  ~~A|  |B|-1|0~C|D|x|0|9~", {"A,B,-1,0", "C,D,0,1"}},
      {"A|B|99999999999|-99999999999~", {"A,B,2147483647,-2147483648"}},
      {"|~|", {}},
  };
  for (const Row& row : rows) {
    Key()->WriteText("UserProperties", row.list);
    const CIXConfig config;
    std::vector<std::string> got;
    for (const auto& p : config.UserProperties) {
      got.push_back(p->Property + "," + p->DisplayName + "," + std::to_string(p->UnitFamily) + "," +
                    std::to_string(p->IsScalar));
    }
    EXPECT_EQ(got, row.properties) << row.list;
  }
}

TEST_F(MachineConfig, LoadsFromAnotherPlaceButTheUsersOwnPropertiesAndAppends) {
  const auto machine = RegistryKey::Create(platform::kLocalMachine, "Old\\Intersect");
  machine->WriteNumber("StartPort", 5);
  machine->WriteText("UserProperties", "M|M|1~");
  RegistryKey::Create(platform::kCurrentUser, "Old\\Intersect")
      ->WriteText("UserProperties", "U|U|1~");
  CIXConfig config;
  config.EndPort = 6;
  config.Load(platform::kLocalMachine, "Old\\Intersect");
  config.Load(platform::kLocalMachine, "Old\\Intersect");
  EXPECT_EQ(config.StartPort, 5);
  EXPECT_EQ(config.EndPort, 9101);
  ASSERT_EQ(config.UserProperties.size(), 2u);
  EXPECT_EQ(config.UserProperties[1]->Property, "U");
}

}  // namespace
}  // namespace gantry::test
