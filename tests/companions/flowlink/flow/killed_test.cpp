// A coupled run of which one process is killed.

#include <csignal>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "flow_fixture.h"
#include "support/free_ports.h"

namespace gantry::flowlink::test {
namespace {

/// The first child of a process; 0 when there is none.
pid_t ChildOf(pid_t parent) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string text;
    if (!std::getline(file, text)) continue;
    std::istringstream behindName(text.substr(text.rfind(')') + 1));
    std::string state;
    pid_t its = 0;
    if (behindName >> state >> its && its == parent) return std::stoi(entry.path().filename());
  }
  return 0;
}

class KilledRun : public WithFlow, public ::testing::WithParamInterface<const char*> {
 protected:
  /// Starts the run and waits until it is in its third step.
  void StartRun() {
    Copy(ODEH);
    gantry::test::StartSimulatorsOnFreePorts();
    int table[2];
    ASSERT_EQ(::pipe2(table, O_CLOEXEC), 0);
    fieldrun_ = ::fork();
    if (fieldrun_ == 0) BecomeFieldrun(table[1]);
    ::close(table[1]);
    std::string text;
    for (char letter; text.find("2015-02-01") == std::string::npos;) {
      ASSERT_EQ(::read(table[0], &letter, 1), 1) << Errors();
      text += letter;
    }
    table_ = table[0];
  }
  [[noreturn]] void BecomeFieldrun(int table) {
    const std::string errors = folder_ / "errors";
    ::dup2(table, 1);
    ::dup2(::open(errors.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644), 2);
    const std::string file = folder_ / "flow.toml";
    const std::string output = folder_ / "out";
    ::execl(FIELDRUN, FIELDRUN, "run", file.c_str(), "--simulator", FLOWLINK, "--output",
            output.c_str(), nullptr);
    ::_exit(127);
  }
  std::string Errors() const { return gantry::test::TestFolder::Read(folder_ / "errors"); }

  pid_t fieldrun_ = 0;
  int table_ = -1;
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
  ::close(table_);
  if (whom == "fieldrun") return;
  const int status = ended.at(fieldrun_);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 1);
  EXPECT_THAT(Errors(), ::testing::HasSubstr("Connection to simulator failed"));
  const std::string rows = gantry::test::TestFolder::Read(folder_ / "out" / "wells.csv");
  EXPECT_THAT(rows, ::testing::HasSubstr("\n2,2015-02-01,")) << "the steps that were done";
  if (whom != "flow") return;
  EXPECT_THAT(Errors(), ::testing::HasSubstr("flow ended by signal 9"));
}

INSTANTIATE_TEST_SUITE_P(Flow, KilledRun, ::testing::Values("fieldrun", "flowlink", "flow"),
                         [](const auto& whom) { return std::string(whom.param); });

}  // namespace
}  // namespace gantry::flowlink::test
