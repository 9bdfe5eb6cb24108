// What a run shows on a terminal.

#include <regex>

#include <gtest/gtest.h>

#include "on_terminal.h"
#include "program.h"

namespace gantry::fieldrun::test {
namespace {

TEST(TerminalRun, KeepsItsBarWhileTheSimulatorWorks) {
  const gantry::test::TestFolder folder;
  OnTerminal run({"run", ExampleCase("five_spot"), "-n", "3", "-o", (folder / "out").string()});
  run.ListenToTheEnd();
  EXPECT_EQ(WEXITSTATUS(run.Wait()), 0);
  // The row of a step comes when the next one has begun; the bar of that stands below it.
  const std::regex rowAndBar(
      R"( 1 2020-01-01 [^\r]*\r\n\r\[#{8}\.{16}\] step 2 of 3  2020-02-01  \d:\d\d, \d:\d\d left)");
  EXPECT_TRUE(std::regex_search(run.said, rowAndBar)) << run.said;
  EXPECT_NE(run.said.find("\r\x1b[K\r\n3 steps: the run is complete"), std::string::npos)
      << run.said;
}

TEST(TerminalRun, TellsAtOnceOfASimulatorThatHasEndedBeforeItCouldBeReached) {
  const gantry::test::TestFolder folder;
  const auto simulator = folder.Write("simulator", "#!/bin/sh\necho out of licences >&2\nexit 3\n");
  std::filesystem::permissions(simulator, std::filesystem::perms::owner_all);
  for (const std::vector<std::string>& verb :
       {std::vector<std::string>{"run", "-o", (folder / "out").string()},
        {"get", "Intersect.IsRunning", "--start"}}) {
    std::vector<std::string> line = verb;
    line.insert(line.begin() + 1, ExampleCase("odeh"));
    line.insert(line.end(), {"--simulator", simulator.string()});
    OnTerminal run(line);
    ASSERT_TRUE(run.ListenFor("fieldrun: the simulator has ended with status 3")) << run.said;
    EXPECT_LT(run.said.find("out of licences"), run.said.find("fieldrun: the simulator has ended"));
  }
}

TEST(TerminalRun, IsNoSuccessWhenTheSimulatorFailsAsItEnds) {
  const gantry::test::TestFolder folder;
  const auto tanksim = std::filesystem::path(FIELDRUN).parent_path() / "tanksim";
  const auto simulator =
      folder.Write("simulator", "#!/bin/sh\n'" + tanksim.string() + "' \"$@\"\nexit 5\n");
  std::filesystem::permissions(simulator, std::filesystem::perms::owner_all);
  OnTerminal run({"run", ExampleCase("odeh"), "-n", "1", "-o", (folder / "out").string(),
                  "--simulator", simulator.string()});
  while (run.Listen()) {
  }
  EXPECT_EQ(WEXITSTATUS(run.Wait()), 1);
  EXPECT_NE(run.said.find("but the simulator has then ended with status 5"), std::string::npos)
      << run.said;
  EXPECT_EQ(Table(folder / "out/field.csv").Rows(), 1U);
}

}  // namespace
}  // namespace gantry::fieldrun::test
