#include "settings/link_settings.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "settings/machine_config.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

TEST(LinkSettings, CutsTheDatasetPathByItsOwnRule) {
  struct Row {
    const char* path;
    const char* directory;
    const char* name;
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
    EXPECT_EQ(settings.GetBackupFileName(), std::string(row.path) + ".backup");
    EXPECT_EQ(settings.GetScriptFileName(), row.directory + std::string(row.name) + "_py.py");
  }
}

/// Writes by path below "CaseDetails" and reads back.
std::string Set(LinkSettings& settings, const std::string& path, const char* value) {
  TagParser write = TagParser::ForWriting(path, value);
  if (!settings.Handle(write, nullptr)) return "not taken";
  char reply[64] = {};
  TagParser read = TagParser::ForReading(path, reply);
  return settings.Handle(read, nullptr) ? reply : "not read";
}

TEST(LinkSettings, EveryFieldIsReachedByItsPathAndHeldWithinItsRange) {
  LinkSettings settings;
  for (const char* field :
       {"ConnectionMode", "IPRModel", "UpTimeMode", "HeadNodePort", "LinuxIXVersion", "Parallel"}) {
    EXPECT_EQ(Set(settings, "CaseDetails." + std::string(field), "17"), "17") << field;
  }
  for (const char* field : {"HeadNode", "SimExeName", "FileName"}) {
    EXPECT_EQ(Set(settings, "casedetails." + std::string(field), "a b"), "a b") << field;
  }
  for (const char* field : {"CloseUnconnectedWells", "StdLogging"}) {
    EXPECT_EQ(Set(settings, "CaseDetails." + std::string(field), "1"), "1") << field;
  }
  EXPECT_TRUE(settings.CloseUnconnectedWells && settings.StdLogging);
  EXPECT_EQ(settings.HeadNodePort, 17);
  EXPECT_EQ(settings.FileName, "a b");
  EXPECT_EQ(Set(settings, "Parallel", "2"), "not taken");
  EXPECT_EQ(Set(settings, "CaseDetails.Other", "2"), "not taken");
  EXPECT_EQ(Set(settings, "CaseDetails.Parallel", "0"), "1");
  EXPECT_EQ(Set(settings, "CaseDetails.Parallel", "1000"), "512");
  settings.Parallel = -3;
  char reply[64] = {};
  TagParser read = TagParser::ForReading("CaseDetails.Parallel", reply);
  EXPECT_TRUE(settings.Handle(read, nullptr));
  EXPECT_EQ(settings.Parallel, 1);
}

TEST(LinkSettings, TheRegistryKeepsTheLastUsedValues) {
  const TestFolder folder;
  LinkSettings saved;
  saved.SimExeName = "C:\\ix.exe";
  saved.FileName = "a.afi";
  saved.HeadNode = "node";
  saved.HeadNodePort = 1;
  saved.LinuxIXVersion = 20162;
  saved.Parallel = 1000;
  saved.IPRModel = 0;
  saved.SaveToRegistry();

  LinkSettings loaded;
  loaded.LoadFromRegistry();
  const auto kept = [](const LinkSettings& s) {
    return std::tie(s.SimExeName, s.FileName, s.HeadNode, s.HeadNodePort, s.LinuxIXVersion,
                    s.Parallel);
  };
  EXPECT_EQ(kept(loaded), kept(saved));
  EXPECT_EQ(loaded.IPRModel, 1) << "has no place in the registry";

  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  key->WriteText("HeadNodePort", "9");
  key->WriteNumber("Module", 9);
  loaded.HeadNodePort = 2;
  loaded.LoadFromRegistry();
  EXPECT_EQ(loaded.SimExeName, "C:\\ix.exe") << "a value of the wrong type leaves its field";
  EXPECT_EQ(loaded.HeadNodePort, 2);
}

}  // namespace
}  // namespace gantry::test
