// A coupled run of which one process is killed.

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "flow_fixture.h"
#include "support/free_ports.h"

namespace gantry::flowlink::test {
namespace {

/// The first child of a process; 0 when there is none.
pid_t ChildOf(pid_t parent) {
  const std::string number = std::to_string(parent);
  pid_t child = 0;
  std::ifstream("/proc/" + number + "/task/" + number + "/children") >> child;
  return child;
}

class KilledRun : public WithFlow, public ::testing::WithParamInterface<const char*> {
 protected:
  /// Starts the run and waits until it is in its third step.
  void StartRun() {
    Copy(ODEH);
    gantry::test::StartSimulatorsOnFreePorts();
    const std::string folder = folder_.Path().string();
    const std::string command = "exec " FIELDRUN " run " + folder + "/flow.toml --simulator " +
                                FLOWLINK " --output " + folder + "/out 2>" + folder + "/errors";
    table_ = ::popen(command.c_str(), "re");
    ASSERT_NE(table_, nullptr);
    char line[4096] = "";
    while (std::strstr(line, "2015-02-01") == nullptr) {
      ASSERT_NE(std::fgets(line, sizeof line, table_), nullptr) << Errors();
    }
    fieldrun_ = ChildOf(::getpid());
  }
  std::string Errors() const { return gantry::test::TestFolder::Read(folder_ / "errors"); }

  pid_t fieldrun_ = 0;
  FILE* table_ = nullptr;
};

TEST_P(KilledRun, EndsWholeWhicheverOfItsProcessesIsKilled) {
  StartRun();
  const std::string whom = GetParam();
  const pid_t flowlink = ChildOf(fieldrun_);
  ASSERT_GT(flowlink, 0);
  const pid_t flow = ChildOf(flowlink);
  ASSERT_GT(flow, 0);
  const pid_t victim = whom == "fieldrun" ? fieldrun_ : whom == "flowlink" ? flowlink : flow;
  ASSERT_EQ(::kill(victim, SIGKILL), 0);
  const auto ended = WaitForAll();
  std::fclose(table_);
  if (whom == "fieldrun") return;
  const int status = ended.at(fieldrun_);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  // In an exchange or, as the driver sees before the next one, between two.
  EXPECT_THAT(Errors(), ::testing::AnyOf(::testing::HasSubstr("Connection to simulator failed"),
                                         ::testing::HasSubstr("process is not running")));
  const std::string rows = gantry::test::TestFolder::Read(folder_ / "out" / "wells.csv");
  EXPECT_THAT(rows, ::testing::HasSubstr("\n2,2015-02-01,")) << "the steps that were done";
  if (whom != "flow") return;
  EXPECT_THAT(Errors(), ::testing::HasSubstr("flow ended by signal 9"));
}

INSTANTIATE_TEST_SUITE_P(Flow, KilledRun, ::testing::Values("fieldrun", "flowlink", "flow"),
                         [](const auto& whom) { return std::string(whom.param); });

}  // namespace
}  // namespace gantry::flowlink::test
