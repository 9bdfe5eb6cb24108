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
    gantry::test::StartSimulatorsOnFreePorts();
    process_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (process_ == 0) {
      ::execl(FIELDRUN, FIELDRUN, "run", file.c_str(), "-o", out_.c_str(), nullptr);
      ::_exit(127);
    }
    ListenFor("\x1b[K    3 ");
  }
  ~RunOnTerminal() override {
    if (process_ > 0) ::kill(process_, SIGKILL);
    Wait();
  }

  /// Listens until the terminal has shown the text, or to its end.
  void ListenFor(const std::string& text) {
    std::array<char, 4096> part{};
    while (said_.find(text) == std::string::npos) {
      const ssize_t count = ::read(terminal_, part.data(), part.size());
      if (count <= 0) return;
      said_.append(part.data(), static_cast<size_t>(count));
    }
  }
  /// The status with which the program has ended; see waitpid(2).
  int Wait() {
    ListenFor("what no program says");
    int status = 0;
    if (process_ > 0) ::waitpid(process_, &status, 0);
    process_ = -1;
    return status;
  }
  /// Holds the tables to the report, which tells how the run has ended.
  void ExpectReport(const std::string& state) const {
    const size_t steps = Table(folder_ / "out/field.csv").Rows();
    EXPECT_GE(steps, 2U);
    EXPECT_LT(steps, 3000U);
    const std::string report = gantry::test::TestFolder::Read(folder_ / "out/report.html");
    const std::string told = "\"steps\":" + std::to_string(steps) + ",\"state\":" + state;
    EXPECT_NE(report.find(told), std::string::npos) << told;
  }

  gantry::test::TestFolder folder_;
  const std::string out_ = (folder_ / "out").string();
  int terminal_ = -1;
  pid_t process_ = -1;
  std::string said_;
};

class Asked : public RunOnTerminal, public ::testing::WithParamInterface<std::string> {};

TEST_P(Asked, FinishesItsStep) {
  if (GetParam() == "AfterControlC") {
    ASSERT_EQ(::write(terminal_, "\x03", 1), 1);
  }
  if (GetParam() == "WhenItIsAskedToEnd") ::kill(process_, SIGTERM);
  if (GetParam() == "WhenTheTerminalIsClosed") ::close(terminal_);
  const int status = Wait();
  ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status) << "\n" << said_;
  EXPECT_EQ(WEXITSTATUS(status), 3) << said_;
  const bool isShown = said_.find("fieldrun: the run was ended by the user after") != said_.npos;
  EXPECT_TRUE(isShown || GetParam() == "WhenTheTerminalIsClosed") << said_;
  ExpectReport("\"user\",\"failure\":\"\"");
  const Table wells(folder_ / "out/wells.csv");
  EXPECT_NE(wells.Text(wells.Rows() - 1, "reported pressure (psig)"), "") << "of the last step";
}

INSTANTIATE_TEST_SUITE_P(RunOnTerminal, Asked,
                         ::testing::Values("AfterControlC", "WhenItIsAskedToEnd",
                                           "WhenTheTerminalIsClosed"),
                         [](const auto& how) { return how.param; });

TEST_F(RunOnTerminal, LeavesWholeRowsOfOneRunWhenItIsKilled) {
  EXPECT_GE(Table(folder_ / "out/field.csv").Rows(), 2U) << "the rows stand there at once";
  const Outcome second = RunFieldrun(folder_, {"run", ExampleCase("odeh"), "-o", out_});
  EXPECT_NE(second.err.find("Another run is writing its results into " + out_), std::string::npos)
      << second.err;
  ::kill(process_, SIGKILL);
  Wait();
  const Outcome report = RunFieldrun(folder_, {"report", out_});
  ASSERT_EQ(report.status, 0) << report.err;
  ExpectReport("\"cut\"");
  const std::string id = Table(folder_ / "out/field.csv").Text(0, "run");
  for (const char* file : {"wells.csv", "inflow.csv", "run.json", "report.html"}) {
    const std::string text = gantry::test::TestFolder::Read(folder_ / "out" / file);
    EXPECT_NE(text.find(id), std::string::npos) << file;
  }
}

}  // namespace
}  // namespace gantry::fieldrun::test
