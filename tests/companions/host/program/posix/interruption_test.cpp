// How a run ends that its user doesn't want any longer, on a terminal of its own.

#include <array>
#include <csignal>

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "program.h"
#include "support/free_ports.h"

namespace gantry::fieldrun::test {
namespace {

/// fieldrun on a terminal, in the middle of a run of thousands of steps.
class RunOnTerminal : public ::testing::Test {
 protected:
  RunOnTerminal() {
    const std::string file = ChangedExample(folder_, "odeh", "step = \"month\"", "step = 1");
    std::vector<std::string> line = {FIELDRUN, "run", file, "-o", (folder_ / "out").string()};
    std::vector<char*> arguments;
    for (std::string& argument : line) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    gantry::test::StartSimulatorsOnFreePorts();
    process_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (process_ == 0) {
      ::execv(FIELDRUN, arguments.data());
      ::_exit(127);
    }
    while (said_.find("\x1b[K    3 ") == std::string::npos && Listen()) {
    }
  }

  /// Takes what the terminal shows next; false when nobody writes there any more.
  bool Listen() {
    std::array<char, 4096> part{};
    const ssize_t count = ::read(terminal_, part.data(), part.size());
    if (count > 0) said_.append(part.data(), static_cast<size_t>(count));
    return count > 0;
  }

  void ExpectWholeResults() {
    int status = 0;
    ASSERT_EQ(::waitpid(process_, &status, 0), process_);
    ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status) << "\n" << said_;
    EXPECT_EQ(WEXITSTATUS(status), 3) << said_;
    const size_t steps = Table(folder_ / "out/field.csv").Rows();
    EXPECT_GE(steps, 3U);
    EXPECT_LT(steps, 3000U);
    const Table wells(folder_ / "out/wells.csv");
    ASSERT_EQ(wells.Rows(), 2 * steps);
    EXPECT_NE(wells.Text(2 * steps - 1, "reported pressure (psig)"), "") << "of the last step";
    const std::string report = gantry::test::TestFolder::Read(folder_ / "out/report.html");
    EXPECT_NE(report.find("The run was ended by the user after " + std::to_string(steps)),
              std::string::npos);
    EXPECT_EQ(report.find("failed"), std::string::npos);
  }

  gantry::test::TestFolder folder_;
  std::string said_;
  int terminal_ = -1;
  pid_t process_ = -1;
};

TEST_F(RunOnTerminal, FinishesItsStepAfterControlC) {
  ASSERT_EQ(::write(terminal_, "\x03", 1), 1);
  while (Listen()) {
  }
  ExpectWholeResults();
  EXPECT_NE(said_.find("fieldrun: the run was ended by the user after"), std::string::npos)
      << said_;
}

TEST_F(RunOnTerminal, FinishesItsStepWhenItIsAskedToEnd) {
  ::kill(process_, SIGTERM);
  while (Listen()) {
  }
  ExpectWholeResults();
}

TEST_F(RunOnTerminal, FinishesItsStepWhenTheTerminalIsClosed) {
  ::close(terminal_);
  ExpectWholeResults();
}

TEST_F(RunOnTerminal, LeavesWholeRowsOfOneRunWhenItIsKilled) {
  const std::string out = (folder_ / "out").string();
  EXPECT_GE(Table(folder_ / "out/field.csv").Rows(), 2U) << "the rows stand there at once";
  const Outcome second = RunFieldrun(folder_, {"run", ExampleCase("odeh"), "-o", out});
  EXPECT_NE(second.err.find("Another run is writing its results into " + out), std::string::npos)
      << second.err;
  ::kill(process_, SIGKILL);
  while (Listen()) {
  }
  ASSERT_EQ(::waitpid(process_, nullptr, 0), process_);
  const Outcome report = RunFieldrun(folder_, {"report", out});
  ASSERT_EQ(report.status, 0) << report.err;
  const Table field(folder_ / "out/field.csv");
  ASSERT_GE(field.Rows(), 2U);
  const std::string id = field.Text(0, "run");
  for (const char* file : {"wells.csv", "inflow.csv", "run.json", "report.html"}) {
    const std::string text = gantry::test::TestFolder::Read(folder_ / "out" / file);
    EXPECT_NE(text.find(id), std::string::npos) << file;
  }
  const std::string page = gantry::test::TestFolder::Read(folder_ / "out/report.html");
  EXPECT_NE(page.find("The run was cut off. This shows the " + std::to_string(field.Rows())),
            std::string::npos);
}

}  // namespace
}  // namespace gantry::fieldrun::test
