// How a run ends that its user doesn't want any longer, on a terminal of its own.

#include <gtest/gtest.h>

#include "on_terminal.h"
#include "program.h"

namespace gantry::fieldrun::test {
namespace {

/// fieldrun on a terminal, in the middle of a run of thousands of steps.
class RunOnTerminal : public ::testing::Test {
 protected:
  RunOnTerminal()
      : run_({"run", ChangedExample(folder_, "odeh", "step = \"month\"", "step = 1"), "-o",
              (folder_ / "out").string()}) {
    run_.ListenFor("\x1b[K    3 ");
  }

  void ExpectWholeResults() {
    run_.ListenToTheEnd();
    const int status = run_.Wait();
    ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status) << "\n" << run_.said;
    EXPECT_EQ(WEXITSTATUS(status), 3) << run_.said;
    const size_t steps = Table(folder_ / "out/field.csv").Rows();
    EXPECT_GE(steps, 3U);
    EXPECT_LT(steps, 3000U);
    const Table wells(folder_ / "out/wells.csv");
    ASSERT_EQ(wells.Rows(), 2 * steps);
    EXPECT_NE(wells.Text(2 * steps - 1, "reported pressure (psig)"), "") << "of the last step";
    const std::string report = gantry::test::TestFolder::Read(folder_ / "out/report.html");
    EXPECT_NE(
        report.find("\"steps\":" + std::to_string(steps) + ",\"state\":\"user\",\"failure\":\"\""),
        std::string::npos);
  }

  gantry::test::TestFolder folder_;
  OnTerminal run_;
};

TEST_F(RunOnTerminal, FinishesItsStepAfterControlC) {
  ASSERT_EQ(::write(run_.terminal, "\x03", 1), 1);
  ExpectWholeResults();
  EXPECT_NE(run_.said.find("fieldrun: the run was ended by the user after"), std::string::npos);
}

TEST_F(RunOnTerminal, FinishesItsStepWhenItIsAskedToEnd) {
  ::kill(run_.process, SIGTERM);
  ExpectWholeResults();
}

TEST_F(RunOnTerminal, FinishesItsStepWhenTheTerminalIsClosed) {
  ::close(run_.terminal);
  ExpectWholeResults();
}

TEST_F(RunOnTerminal, LeavesWholeRowsOfOneRunWhenItIsKilled) {
  const std::string out = (folder_ / "out").string();
  EXPECT_GE(Table(folder_ / "out/field.csv").Rows(), 2U) << "the rows stand there at once";
  const Outcome second = RunFieldrun(folder_, {"run", ExampleCase("odeh"), "-o", out});
  EXPECT_NE(second.err.find("Another run is writing its results into " + out), std::string::npos)
      << second.err;
  ::kill(run_.process, SIGKILL);
  run_.ListenToTheEnd();
  run_.Wait();
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
  EXPECT_NE(page.find("\"steps\":" + std::to_string(field.Rows()) + ",\"state\":\"cut\""),
            std::string::npos);
}

}  // namespace
}  // namespace gantry::fieldrun::test
