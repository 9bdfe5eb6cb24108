// The sessions of jobs, on this machine and on a cluster, and what they take from their
// environment.

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

#include "platform/user.h"
#include "remote/passing_calls.h"
#include "remote/wire_script.h"
#include "sessions/job_slot.h"
#include "sessions/linux_job_session.h"
#include "settings/link_settings.h"
#include "support/isolation.h"
#include "support/play.h"
#include "support/test_folder.h"

namespace gantry::test {
namespace {

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

LinkSettings SettingsFor(uint16_t port) {
  LinkSettings settings;
  settings.HeadNode = "127.0.0.1";
  settings.HeadNodePort = port;
  settings.FileName = "/fields/north/NORTH.v2.afi";
  settings.Parallel = 4;
  settings.LinuxIXVersion = 20172;
  settings.StdLogging = true;
  return settings;
}

std::string Filled(std::string line) {
  const std::string user = boost::to_lower_copy(platform::LogInName().value_or(""));
  boost::replace_all(line, "{user}", user);
  boost::replace_all(line, "\\n", "\n");
  boost::replace_all(line, "\\t", "\t");
  return line;
}

void Start(CLinuxJobSession& session, Texts& told) {
  const bool ranBefore = session.IsRunning();
  std::string message;
  const int32_t result = session.Start(message);
  if (result != 0) told.push_back(message);
  EXPECT_EQ(session.IsRunning(), ranBefore || result == 0);
  if (!session.IsRunning()) return;
  const double days = session.Connector->GetTimeDays();
  told.push_back("runs on " + session.GetHostDescription() + Line(",", days));
}

TEST(LinuxJobSession, StartsASimulatorAsItIsWritten) {
  for (const Talk& talk : TalksIn("remote/factory.talk")) {
    ScriptedPeer peer;
    for (const Turn& turn : talk.turns) {
      for (const std::string& line : turn.wire) Script(peer, line[0], Elements(Filled(line)));
    }
    peer.Start();
    LinkSettings settings = SettingsFor(peer.Port());
    const bool isInScenario = talk.turns.front().call == "start in scenario 4";
    settings.StdLogging = !isInScenario;
    const ScopedVariable job("LSB_JOBID", isInScenario ? std::optional("77") : std::nullopt);
    const ScopedVariable scenario("LSF_TESSEL_SCENARIO", "4");
    CLinuxJobSession session(settings);
    EXPECT_EQ(session.GetHostDescription(), "");
    Play(talk, [&session](const Turn&, Texts& told) { Start(session, told); });
  }
}

TEST(LinuxJobSession, SaysThatNobodyListensAndNamesAnIntegerThatIsThrown) {
  const LinkSettings settings = SettingsFor(1);
  const std::string nobody =
      "Error connecting to run factory on host 127.0.0.1, port 1. Is it running?";
  std::string message;
  EXPECT_EQ(CLinuxJobSession(settings).Start(message), 1);
  EXPECT_EQ(message, nobody);
  PassingCalls calls;
  calls.findHost = [](const std::string&) -> std::optional<uint32_t> { throw 10061; };
  EXPECT_EQ(CLinuxJobSession(settings).Start(message), 1);
  EXPECT_EQ(message, nobody + " Error number: 10061");
}

}  // namespace
}  // namespace gantry::test
