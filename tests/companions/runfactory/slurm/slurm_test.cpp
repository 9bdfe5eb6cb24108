// The service with the real Slurm that script/slurm-for-tests has brought up around this program,
// or with stand-ins for its commands.

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "../factory_fixture.h"
#include "runfactory/program.h"
#include "support/isolation.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

class SlurmTest : public FactoryTest {
 protected:
  SlurmTest() {
    if (std::getenv("SLURM_CONF") != nullptr) return;
    const fs::path commands = folder / "slurm";
    fs::create_directory(commands);
    for (const char* name : {"sbatch", "srun", "squeue", "scontrol", "scancel"}) {
      fs::create_symlink(SLURM_STAND_IN, commands / name);
    }
    path_.Set(commands.string() + ":" + std::getenv("PATH"));
  }

  /// With a simulator of which only the first task runs, and which `rest` ends.
  void StartSlurmFactory(const std::string& rest) {
    const std::string first = "[ \"$SLURM_PROCID\" = 0 ] || exit 0\n";
    StartFactory({"--launcher", "slurm"},
                 Script("simulator", first + TANKSIM + " \"$@\"\n" + rest));
  }

  static std::string Show(pid_t job) {
    const std::string scontrol = cluster::FindProgram("scontrol");
    return cluster::RunProgram({scontrol, "--oneliner", "show", "job", std::to_string(job)}, 60)
        .output;
  }

 private:
  ScopedVariable path_{"PATH", std::getenv("PATH")};
};

TEST_F(SlurmTest, RunsACaseAsAJobOfItsNameAndSize) {
  StartSlurmFactory("");
  LinkSettings settings = SettingsFor("FIVE_SPOT");
  settings.Parallel = 2;
  auto session = Begin(settings);
  ASSERT_NE(session->Connector, nullptr);
  EXPECT_EQ(session->GetHostDescription(), "localhost") << "as Slurm names the node";
  const pid_t job = SimulatorOfNext();
  const std::string shown = Show(job);
  for (const char* part : {"JobName=FIVE_SPOT ", "NumTasks=2 ", "JobState=RUNNING "}) {
    EXPECT_NE(shown.find(part), std::string::npos) << shown;
  }
  session->Connector->AdvanceNewton();
  session->Connector->RunUntil(31.0);
  EXPECT_EQ(session->Connector->GetTimeDays(), 31.0);
  session.reset();
  factory->AwaitLog("its place is free");
  EXPECT_NE(Show(job).find("JobState=COMPLETED"), std::string::npos) << Show(job);
}

TEST_F(SlurmTest, CancelsTheJobOfASessionThatCrashesOrIsToStop) {
  for (const bool crashes : {true, false}) {
    StartSlurmFactory("exec sleep 1000");
    const auto session = Begin("FIVE_SPOT");
    const pid_t job = SimulatorOfNext();
    if (crashes) ::kill(factory->Children().front(), SIGKILL);
    if (!crashes) factory->Signal(SIGTERM);
    factory->AwaitLog(crashes ? "its place is free" : "has stopped");
    EXPECT_NE(Show(job).find("JobState=CANCELLED"), std::string::npos) << Show(job);
  }
}

TEST_F(SlurmTest, TellsTheDriverWhatSlurmSays) {
  StartFactory({"--launcher=slurm", "--slurm-option=--partition=nowhere"});
  EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("Slurm's sbatch failed: sbatch: error:"),
            std::string::npos);
  if (std::getenv("SLURM_CONF") == nullptr) {
    StartFactory({"--launcher=slurm", "--slurm-option=--comment=mute"});
    EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("gave no job number"), std::string::npos);
  }
  StartFactory({"--launcher=slurm"}, "/bin/false");
  EXPECT_NE(Refusal(SettingsFor("FIVE_SPOT")).find("has ended (FAILED)"), std::string::npos);
}

}  // namespace
}  // namespace gantry::test
