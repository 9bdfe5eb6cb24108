// What the registry keeps of the machine's configuration and of the case that was used last.

#include "platform/registry.h"

#include <atomic>
#include <functional>
#include <thread>

#include <gtest/gtest.h>

#include "settings/link_settings.h"
#include "settings/machine_config.h"
#include "support/test_folder.h"
#include "ui/configure_dlg.h"
#include "ui/dialog_templates.h"
#include "ui/memory_window.h"

namespace gantry::test {
namespace {

using platform::RegistryKey;

class Registry : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Key(const std::string& path = kRegistryKey,
                                          uintptr_t root = platform::kCurrentUser) {
    return RegistryKey::Create(root, path);
  }
  /// What stands under these names.
  static std::string Kept(const std::vector<std::string>& names) {
    const auto key = Key();
    std::string text;
    for (const std::string& name : names) {
      const auto number = key->ReadNumber(name);
      text += (number ? std::to_string(*number) : key->ReadText(name).value_or("none")) + ", ";
    }
    return text;
  }
  static std::string TextOf(const CIXConfig& config) {
    std::string text = config.SimExecutable + ", " + config.MPIExecutable + ", " + config.CmdLine +
                       ", " + std::to_string(config.StartPort) + ", " +
                       std::to_string(config.EndPort) + ", ";
    for (const auto& property : config.UserProperties) text += property->Property;
    return text;
  }

  TestFolder folder_;
};

TEST_F(Registry, KeepsTheConfigurationWhenItGoesButNoExecutableThatIsNone) {
  const std::string program = folder_.Write("ix", "").string();
  const std::string list = "OPR|Oil rate|-1|1~XMF|X|3|0~";
  Key()->WriteText("UserProperties", list);
  {
    CIXConfig config;
    EXPECT_EQ(TextOf(config), ", , , 9001, 9101, OPRXMF");
    config.SimExecutable = config.MPIExecutable = program;
    config.CmdLine = "-x \"y\"";
    config.StartPort = 9002;
    config.EndPort = 9003;
  }
  EXPECT_EQ(Kept({"SimExecutable", "MPIExecutable", "CmdLine", "StartPort", "UserProperties"}),
            program + ", " + program + ", -x \"y\", 9002, " + list + ", ");
  EXPECT_EQ(TextOf(CIXConfig()), program + ", " + program + ", -x \"y\", 9002, 9003, OPRXMF");
  Key()->WriteText("SimExecutable", (folder_ / "gone").string());
  Key()->WriteText("MPIExecutable", folder_.Path().string());
  { const CIXConfig config; }
  EXPECT_EQ(Kept({"SimExecutable", "MPIExecutable"}), ", , ");
}

TEST_F(Registry, GivesAConfigurationFromAnotherPlaceButTheUsersOwnPropertiesAndAppends) {
  const std::string place = "Old\\Intersect";
  const auto machine = Key(place, platform::kLocalMachine);
  machine->WriteNumber("StartPort", 5);
  machine->WriteText("UserProperties", "M|M|1~");
  Key(place)->WriteText("UserProperties", "U|U|1~");
  CIXConfig config;
  config.EndPort = 6;
  config.Load(platform::kLocalMachine, place);
  config.Load(platform::kLocalMachine, place);
  EXPECT_EQ(TextOf(config), ", , , 5, 9101, UU");
}

/// The options, and the port by which they are known.
std::string OptionsOf(int32_t port) { return std::string(1000, static_cast<char>(port)); }

/// That a start sees one or the other of what another thread makes of the configuration by turns.
void ExpectReadWhole(const CIXConfig& config, int times,
                     const std::function<void(int port)>& make) {
  std::atomic<bool> hasEnded = false;
  const std::jthread host([&] {
    for (int i = 0; i < times; ++i) make(i % 2 == 0 ? 'A' : 'B');
    hasEnded = true;
  });
  while (!hasEnded) {
    const LaunchSettings seen = config.ForLaunch();
    ASSERT_EQ(seen.CmdLine, OptionsOf(seen.StartPort));
  }
}

TEST_F(Registry, IsReadWholeByAStartWhileTheHostCopiesAnotherOrTheDialogChangesIt) {
  for (const int port : {'A', 'B'}) {
    const auto key = Key(OptionsOf(port).substr(0, 1));
    key->WriteText("CmdLine", OptionsOf(port));
    key->WriteNumber("StartPort", static_cast<uint32_t>(port));
  }
  CIXConfig config(platform::kCurrentUser, "A");
  ExpectReadWhole(config, 500, [&](int port) {
    config.Load(platform::kCurrentUser, OptionsOf(port).substr(0, 1));
  });
  CConfigureDlg dialog(config);
  MemoryWindow window(dialog);
  const auto accept = [&](int port) {
    window.SetText(configure_id::kCmdLine, OptionsOf(port));
    window.SetText(configure_id::kStartPort, std::to_string(port));
    dialog.OnButton(window, platform::kOkButton);
  };
  accept('A');
  ExpectReadWhole(config, 5000, accept);
}

TEST_F(Registry, KeepsTheCaseThatWasUsedLast) {
  LinkSettings settings;
  settings.SimExeName = "C:\\ix.exe";
  settings.FileName = "a.afi";
  settings.HeadNode = "node";
  settings.SaveToRegistry();
  EXPECT_EQ(Kept({"Module", "Dataset", "HeadNode", "Parallel", "HeadNodePort", "LinuxIXVersion"}),
            "C:\\ix.exe, a.afi, node, 1, 7777, 100000, ");
  Key()->WriteText("Dataset", "b.afi");
  Key()->WriteNumber("LinuxIXVersion", 20162);
  Key()->WriteText("HeadNodePort", "a value of the wrong type leaves its field");
  Key()->WriteNumber("Module", 9);
  settings.LoadFromRegistry();
  EXPECT_EQ(settings.FileName + "/" + settings.SimExeName, "b.afi/C:\\ix.exe");
  EXPECT_EQ(settings.LinuxIXVersion, 20162);
  EXPECT_EQ(settings.HeadNodePort, 7777);
}

}  // namespace
}  // namespace gantry::test
