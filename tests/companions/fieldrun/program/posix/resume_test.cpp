// A run that was left, however it was left, and goes on as if it had never stopped.

#include <gtest/gtest.h>

#include "program.h"
#include "support/free_ports.h"

namespace gantry::fieldrun::test {
namespace {

class ResumedRun : public ::testing::Test {
 protected:
  static constexpr const char* kTables[] = {"wells.csv", "inflow.csv", "events.csv", "field.csv"};

  std::string Read(const std::string& file) const {
    return gantry::test::TestFolder::Read(folder_ / file);
  }
  void Run(const std::vector<std::string>& arguments) const {
    const Outcome run = RunFieldrun(folder_, arguments);
    ASSERT_EQ(run.status, 0) << run.err;
  }
  /// What a run of skerry gives that nobody stops.
  void RunWhole() const { Run({"run", ExampleCase("skerry"), "-o", "whole", "-q"}); }

  /// Kills fieldrun, given its arguments, once it has shown the row of a step.
  void KillAt(const std::string& step, const std::string& arguments) const {
    const std::string run = "echo $$; exec " FIELDRUN " " + arguments;
    gantry::test::StartSimulatorsOnFreePorts();
    const Outcome killed = RunInFolder(
        folder_, "sh",
        {"-c", "sh -c '" + run + "' | { read pid; while read step rest; do [ \"$step\" != " + step +
                   " ] || { kill -9 $pid; exit; }; done; exit 9; }"});
    ASSERT_EQ(killed.status, 0) << killed.err;
  }

  /// A folder's file without the id of its run.
  std::string WithoutId(const std::string& folder, const std::string& file) const {
    const std::string id = Table(folder_ / folder / "field.csv").Text(0, "run");
    std::string text = Read(folder + "/" + file);
    for (size_t at = 0; (at = text.find(id, at)) != std::string::npos;) text.erase(at, id.size());
    return text;
  }
  void ExpectAsWhole(const std::string& folder) const {
    for (const char* table : kTables) {
      EXPECT_EQ(WithoutId(folder, table), WithoutId("whole", table)) << table;
    }
    EXPECT_EQ(WithoutId(folder, "run.json"), WithoutId("whole", "run.json"));
    EXPECT_EQ(Table(folder_ / folder / "profile.csv").Text(1, "step"), "1");
    EXPECT_NE(Read(folder + "/report.html").find("\"steps\":72,\"state\":\"complete\""),
              std::string::npos);
  }

  const gantry::test::TestFolder folder_;
};

TEST_F(ResumedRun, GivesTheTablesOfOneThatWasNeverStopped) {
  RunWhole();
  // Behind the first step, within the months of an event, and where lift gas has come on.
  Run({"run", ExampleCase("skerry"), "-o", "left", "-q", "-n", "1"});
  for (const char* more : {"29", "25", "1000"}) Run({"resume", "left", "-q", "-n", more});
  ExpectAsWhole("left");
}

TEST_F(ResumedRun, CutsOffWhatAStepHasBegunToWrite) {
  RunWhole();
  Run({"run", ExampleCase("skerry"), "-o", "left", "-q", "-n", "30"});
  const std::string done = Read("left/field.csv");
  for (const char* table : kTables) {
    const std::string file = "left/" + std::string(table);
    const std::string rows = Read(file);
    const std::string last = rows.substr(rows.rfind('\n', rows.size() - 2) + 1);
    const bool isLast = std::string(table) == "field.csv";  // whose row makes a step whole
    folder_.Write(file, rows + (isLast ? "" : "31" + last.substr(last.find(','))) + "31,2027-0");
  }
  Run({"resume", "left", "-q"});
  EXPECT_TRUE(Read("left/field.csv").starts_with(done));
  ExpectAsWhole("left");
}

TEST_F(ResumedRun, GoesOnAfterEachKill) {
  RunWhole();
  KillAt("3", "run " + ExampleCase("skerry") + " -o left");
  KillAt("31", "resume left");
  KillAt("60", "resume left");
  EXPECT_LT(Table(folder_ / "left/field.csv").Rows(), 72U);
  Run({"resume", "left", "-q"});
  ExpectAsWhole("left");
}

TEST_F(ResumedRun, IsClosedWhenItWasKilledBehindItsLastStep) {
  RunWhole();
  const std::string before = Read("whole/run.json");
  std::string killed = before;
  killed.replace(killed.find("\"end\": {"), std::string::npos, "\"end\": null}\n");
  folder_.Write("whole/run.json", killed);
  Run({"resume", "whole"});
  EXPECT_EQ(Read("whole/run.json"), before);
}

TEST_F(ResumedRun, IsRefusedBySimulatorsThatBeginAnew) {
  Run({"run", ExampleCase("python_simulator"), "-o", "left", "-n", "2", "-q"});
  const std::string before = Read("left/field.csv") + Read("left/run.json");
  const Outcome resumed = RunFieldrun(folder_, {"resume", "left"});
  EXPECT_EQ(resumed.status, 1);
  EXPECT_NE(resumed.err.find("doesn't go on at 2025-03-01: it begins anew at 2025-01-01"),
            std::string::npos)
      << resumed.err;
  EXPECT_EQ(Read("left/field.csv") + Read("left/run.json"), before);
}

}  // namespace
}  // namespace gantry::fieldrun::test
