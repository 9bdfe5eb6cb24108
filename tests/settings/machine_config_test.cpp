#include "settings/machine_config.h"

#include <atomic>
#include <sstream>
#include <thread>

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

using platform::RegistryKey;

class MachineConfig : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Key(uintptr_t root = platform::kCurrentUser,
                                          const std::string& path = kRegistryKey) {
    return RegistryKey::Create(root, path);
  }

  TestFolder folder_;
};

/// Property, name, family, the host's code of it, and whether it is a scalar.
std::string PropertiesOf(const CIXConfig& config) {
  std::ostringstream text;
  for (const auto& property : config.UserProperties) {
    text << property->Property << ',' << property->DisplayName << ',' << property->UnitFamily << ','
         << property->UnitCode << ',' << property->IsScalar << ';';
  }
  return text.str();
}

TEST_F(MachineConfig, IsSavedWhenItGoes) {
  const std::string program = folder_.Write("ix", "").string();
  const char* const list = "OPR|Oil rate|-1|1~XMF|X|3|0~";
  Key()->WriteText("UserProperties", list);
  {
    CIXConfig config;
    EXPECT_EQ(config.StartPort, 9001);
    EXPECT_EQ(config.EndPort, 9101);
    config.SimExecutable = config.MPIExecutable = program;
    config.CmdLine = "-x \"y\"";
    config.StartPort = 9002;
    config.EndPort = 9003;
  }
  const auto key = Key();
  EXPECT_EQ(key->ReadText("SimExecutable"), program);
  EXPECT_EQ(key->ReadText("CmdLine"), "-x \"y\"");
  EXPECT_EQ(key->ReadNumber("StartPort"), 9002u);
  EXPECT_EQ(key->ReadText("UserProperties"), list);
  const CIXConfig config;
  EXPECT_EQ(config.SimExecutable + config.MPIExecutable, program + program);
  EXPECT_EQ(config.CmdLine, "-x \"y\"");
  EXPECT_EQ(config.EndPort, 9003);
}

TEST_F(MachineConfig, IsReadWholeByAStartWhileTheHostCopiesAnother) {
  const std::vector<std::string> places = {"Software\\A", "Software\\B"};
  for (const std::string& place : places) {
    const auto key = Key(platform::kCurrentUser, place);
    key->WriteText("CmdLine", std::string(1000, place.back()));
    key->WriteNumber("StartPort", static_cast<uint32_t>(place.back()));
  }
  CIXConfig config(platform::kCurrentUser, places[0]);
  std::atomic<bool> hasEnded = false;
  const std::jthread host([&] {
    for (size_t i = 0; i < 500; ++i) {
      config.Load(platform::kCurrentUser, places[i % places.size()]);
    }
    hasEnded = true;
  });
  while (!hasEnded) {
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
  const std::pair<const char*, const char*> lists[] = {
      {"A|B|3~", "A,B,3,60059,1;"},
      {"A|B|3|0", "A,B,3,60059,0;"},
      {"A|B~", ""},
      {"A||3|1~", "A,3,1,60053,1;"},
      {"  ~~A|  |B|-1|0~C|D|x|0|9~", "A,B,-1,60051,0;C,D,0,60052,1;"},
      {"A|B|99999999999|-99999999999~", "A,B,2147483647,60051,-2147483648;"},
      {"|~|", ""},
  };
  for (const auto& [list, properties] : lists) {
    Key()->WriteText("UserProperties", list);
    EXPECT_EQ(PropertiesOf(CIXConfig()), properties) << list;
  }
}

TEST_F(MachineConfig, LoadsFromAnotherPlaceButTheUsersOwnPropertiesAndAppends) {
  const std::string place = "Old\\Intersect";
  const auto machine = Key(platform::kLocalMachine, place);
  machine->WriteNumber("StartPort", 5);
  machine->WriteText("UserProperties", "M|M|1~");
  Key(platform::kCurrentUser, place)->WriteText("UserProperties", "U|U|1~");
  CIXConfig config;
  config.EndPort = 6;
  config.Load(platform::kLocalMachine, place);
  config.Load(platform::kLocalMachine, place);
  EXPECT_EQ(config.StartPort, 5);
  EXPECT_EQ(config.EndPort, 9101);
  EXPECT_EQ(PropertiesOf(config), "U,U,1,60053,1;U,U,1,60053,1;");
}

}  // namespace
}  // namespace gantry::test
