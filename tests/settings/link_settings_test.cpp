#include "settings/link_settings.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

TEST(LinkSettings, CutsTheDatasetPathByItsOwnRule) {
  struct Row {
    std::string path, directory, name;
  };
  for (const Row& row : {Row{"", "", ""},
                         {"run.afi", "", "run"},
                         {"run", "", "run"},
                         {".afi", "", ".afi"},
                         {"/cases/run.v2.afi", "/cases/", "run.v2"},
                         {"D:\\cases\\run.v2.dat", "D:\\cases\\", "run.v2"},
                         {"D:\\a/b\\run.afi", "D:\\a/", "b\\run"},
                         {"/run.afi", "", "/run"},
                         {"/a\\run.afi", "", "/a\\run"},
                         {"d.x/run", "d.x/", "run"},
                         {"d/.afi", "d/", ".afi"},
                         {"cases/", "cases/", ""}}) {
    LinkSettings settings;
    settings.FileName = row.path;
    EXPECT_EQ(settings.GetCaseDirectory(), row.directory) << row.path;
    EXPECT_EQ(settings.GetCaseBaseName(), row.name) << row.path;
    EXPECT_EQ(settings.GetScriptFileName(), row.directory + row.name + "_py.py");
  }
}

TEST(LinkSettings, TheRegistryKeepsTheLastUsedValues) {
  const TestFolder folder;
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  LinkSettings settings;
  settings.SimExeName = "C:\\ix.exe";
  settings.FileName = "a.afi";
  settings.HeadNode = "node";
  settings.SaveToRegistry();
  EXPECT_EQ(key->ReadText("Module"), "C:\\ix.exe");
  EXPECT_EQ(key->ReadText("Dataset"), "a.afi");
  EXPECT_EQ(key->ReadText("HeadNode"), "node");
  EXPECT_EQ(key->ReadNumber("Parallel"), 1u);
  EXPECT_EQ(key->ReadNumber("HeadNodePort"), 7777u);
  EXPECT_EQ(key->ReadNumber("LinuxIXVersion"), 100000u);

  key->WriteText("Dataset", "b.afi");
  key->WriteNumber("LinuxIXVersion", 20162);
  key->WriteText("HeadNodePort", "a value of the wrong type leaves its field");
  key->WriteNumber("Module", 9);
  settings.LoadFromRegistry();
  EXPECT_EQ(settings.FileName + "/" + settings.SimExeName, "b.afi/C:\\ix.exe");
  EXPECT_EQ(settings.LinuxIXVersion, 20162);
  EXPECT_EQ(settings.HeadNodePort, 7777);
}

}  // namespace
}  // namespace gantry::test
