// The service with a real Slurm, which script/slurm-for-tests has brought up around this program.

#include <csignal>
#include <filesystem>

#include "../factory_fixture.h"
#include "cluster/program.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

constexpr int kCommandSeconds = 60;

class SlurmTest : public FactoryTest {
 protected:
  RunningFactory& StartSlurmFactory(const std::string& simulator,
                                    const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"--launcher",  "slurm",
                                          "--simulator", simulator,
                                          "--map",       "C:\\Cases=" + (folder / "cases").string(),
                                          "--root",      (folder / "cases").string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    factory = std::make_unique<RunningFactory>(arguments);
    return *factory;
  }

  /// A simulator of which only the first task runs, and which `rest` ends.
  std::string Wrapper(const std::string& rest) {
    const fs::path script = folder.Write("simulator", std::string("#!/bin/sh\n") +
                                                          "[ \"$SLURM_PROCID\" = 0 ] || exit 0\n" +
                                                          TANKSIM + " \"$@\"\n" + rest + "\n");
    fs::permissions(script, fs::perms::owner_all);
    return script.string();
  }

  static std::string Ask(const std::vector<std::string>& command) {
    return cluster::RunProgram(command, kCommandSeconds).output;
  }
  static std::string StateOf(pid_t job) {
    return Ask(
        {"squeue", "--noheader", "--states=all", "--jobs=" + std::to_string(job), "--format=%T"});
  }
};

TEST_F(SlurmTest, RunsACaseAsAJobOfItsNameAndSize) {
  StartSlurmFactory(Wrapper(""));
  LinkSettings settings = SettingsFor("FIVE_SPOT");
  settings.Parallel = 2;
  auto session = Begin(settings);
  ASSERT_NE(session->Connector, nullptr);
  EXPECT_EQ(session->GetHostDescription(), "localhost") << "as Slurm names the node";
  const pid_t job = SimulatorOf("runs on localhost");
  const std::string shown = Ask({"scontrol", "--oneliner", "show", "job", std::to_string(job)});
  for (const char* part : {"JobName=FIVE_SPOT ", "NumTasks=2 ", "JobState=RUNNING "}) {
    EXPECT_NE(shown.find(part), std::string::npos) << shown;
  }
  session->Connector->AdvanceNewton();
  session->Connector->RunUntil(31.0);
  EXPECT_EQ(session->Connector->GetTimeDays(), 31.0);
  session.reset();
  factory->AwaitLog("its place is free");
  EXPECT_EQ(StateOf(job), "COMPLETED\n");
}

TEST_F(SlurmTest, CancelsTheJobOfASessionThatCrashes) {
  StartSlurmFactory(Wrapper("exec sleep 1000"));
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  const auto session = Begin(settings);
  const pid_t job = SimulatorOf("runs on localhost");
  ::kill(factory->Children().front(), SIGKILL);
  factory->AwaitLog("its place is free");
  EXPECT_NE(StateOf(job), "RUNNING\n");
  const std::string shown = Ask({"scontrol", "--oneliner", "show", "job", std::to_string(job)});
  EXPECT_NE(shown.find("JobState=CANCELLED"), std::string::npos) << shown;
}

TEST_F(SlurmTest, CancelsEveryJobWhenASignalAsksItToStop) {
  StartSlurmFactory(Wrapper("exec sleep 1000"));
  const LinkSettings settings = SettingsFor("FIVE_SPOT");
  const auto session = Begin(settings);
  const pid_t job = SimulatorOf("runs on localhost");
  factory->Signal(SIGTERM);
  factory->AwaitLog("has stopped");
  EXPECT_EQ(factory->Wait(), 0);
  EXPECT_NE(StateOf(job), "RUNNING\n");
}

TEST_F(SlurmTest, TellsTheDriverWhatSlurmSays) {
  StartSlurmFactory(TANKSIM, {"--slurm-option=--partition=nowhere"});
  EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("Slurm's sbatch failed: sbatch: error:"),
            std::string::npos);
  StartSlurmFactory("/bin/false");
  EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("has ended (FAILED)"), std::string::npos);
}

TEST_F(SlurmTest, GivesTheResultsOfTheLocalRun) {
  StartSlurmFactory(TANKSIM);
  CopyExample("case");
  CopyExample("cluster");
  RunFieldrun("case");
  RunFieldrun("cluster");
  for (const char* table : {"wells.csv", "inflow.csv", "field.csv"}) {
    EXPECT_EQ(TestFolder::Read(folder / "case" / table),
              TestFolder::Read(folder / "cluster" / table))
        << table;
  }
}

}  // namespace
}  // namespace gantry::test
