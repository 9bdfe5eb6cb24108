#include "sessions/job_session.h"

#include <gtest/gtest.h>

#include "platform/files.h"
#include "sessions/job_slot.h"
#include "sessions/version_code.h"
#include "settings/link_settings.h"
#include "support/isolation.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

TEST(VersionCode, ComesFromTheFirstTokenOfThePathThatHasOne) {
  for (const auto& [path, code] :
       {std::pair{"C:\\IX\\2017.2\\bin\\ix.exe", 20172},
        {"/opt/2016.2/ix", platform::kPathSeparator == '/' ? 20162 : 100000},
        {"C:\\IX\\v2016a\\ix.exe", 20161},
        {"C:\\V2017B-extra\\ix", 20172},
        {"C:\\v2017c\\2018.1\\ix", 20181},
        {"C:\\v20x7a\\ix", 100000},
        {"C:\\ 2017 .2 \\ix", 20172},
        {"C:\\2e3\\ix", 20000},
        {"C:\\e3\\ix", 100000},
        {"C:\\2017_2\\ix", 100000},
        {"C:\\1e300\\ix", 2147483647},
        {"2016.1", 20161},
        {"//\\\\", 100000}}) {
    EXPECT_EQ(VersionCodeFromPath(path), code) << path;
  }
}

class JobSlot : public ::testing::Test {
 protected:
  TestFolder folder;
  ScopedVariable job{"OVC_JOBID"};
  ScopedVariable slot{"OVC_JOBSLOT"};
  ScopedVariable host{"OVC_HOST"};
};

TEST_F(JobSlot, CopiesTheDatasetToANameOfItsOwn) {
  const std::string deck = folder.Write("run.v2.afi", "deck").string();
  EXPECT_EQ(DatasetForJobSlot(deck), deck) << "outside a slot";
  job.Set("0");
  slot.Set("3");
  host.Set("node7");
  const std::string copy = (folder / "run.v2_NODE7_3.afi").string();
  EXPECT_EQ(DatasetForJobSlot(deck), copy);
  EXPECT_EQ(TestFolder::Read(copy), "deck");
  EXPECT_EQ(DatasetForJobSlot(copy), (folder / "run.v2_NODE7_3_NODE7_3.afi").string());
}

TEST_F(JobSlot, KeepsTheDatasetWhereItCantBeCopied) {
  job.Set("12");
  const std::string nowhere = (folder / "no.such/deck").string();
  EXPECT_EQ(DatasetForJobSlot(nowhere), nowhere);
}

class SessionOfNothing : public CJobSession {
 public:
  using CJobSession::CJobSession;
  using CJobSession::ScenarioNumber;
  std::string GetHostDescription() override { return {}; }
  int32_t Start(std::string&) override { return 1; }
};

TEST(JobSession, KnowsItsScenarioInABatchJob) {
  const LinkSettings settings;
  ScopedVariable scenario("LSF_TESSEL_SCENARIO", "4");
  ScopedVariable job("LSB_JOBID");
  EXPECT_EQ(SessionOfNothing(settings).ScenarioNumber, 0);
  job.Set("77");
  for (const auto& [text, number] :
       {std::pair{"", 0}, {"0", 1}, {"4", 5}, {"0123456789012345", 0}}) {
    scenario.Set(text);
    EXPECT_EQ(SessionOfNothing(settings).ScenarioNumber, number) << text;
  }
  EXPECT_FALSE(SessionOfNothing(settings).StopIfRunning());
}

}  // namespace
}  // namespace gantry::test
