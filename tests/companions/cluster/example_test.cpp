// The cluster's example, from the host's program to the simulator and back.

#include "factory_fixture.h"

namespace gantry::test {
namespace {

TEST_F(FactoryTest, GivesTheResultsOfTheLocalRunToTheLastDigit) {
  factory = std::make_unique<RunningFactory>(
      std::vector<std::string>{"--simulator", TANKSIM, "--root", (folder / "cases").string()});
  CopyExample("case");
  CopyExample("cluster");
  RunFieldrun("case");
  RunFieldrun("cluster");
  for (const char* table : {"wells.csv", "inflow.csv", "field.csv"}) {
    const std::string local = TestFolder::Read(folder / "case" / table);
    EXPECT_GT(local.size(), 1000u) << table;
    EXPECT_EQ(local, TestFolder::Read(folder / "cluster" / table)) << table;
  }
  factory->AwaitLog("the driver has shut the simulator down");
}

}  // namespace
}  // namespace gantry::test
