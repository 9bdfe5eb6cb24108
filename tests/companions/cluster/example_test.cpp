// The cluster's example, from the host's program to the simulator and back.

#include <filesystem>

#include "cluster/program.h"
#include "factory_fixture.h"

namespace gantry::test {
namespace {

namespace fs = std::filesystem;

class ClusterExample : public FactoryTest {
 protected:
  /// Runs a case file of the folder; its results are left in a folder of its name.
  void Run(const std::string& name) {
    const cluster::Outcome outcome =
        cluster::RunProgram({FIELDRUN, "run", (folder / ("cases/" + name + ".toml")).string(),
                             "--output", (folder / name).string(), "--quiet"},
                            100);
    ASSERT_EQ(outcome.exitStatus, 0) << outcome.output;
  }

  void Copy(const std::string& name) {
    folder.Write("cases/" + name + ".toml",
                 TestFolder::Read(fs::path(EXAMPLES) / "five_spot" / (name + ".toml")));
  }

  void SetPort() {
    std::string text = TestFolder::Read(folder / "cases/cluster.toml");
    const std::string key = "head_node_port = ";
    const size_t begin = text.find(key) + key.size();
    text.replace(begin, text.find('\n', begin) - begin, std::to_string(factory->Port()));
    folder.Write("cases/cluster.toml", text);
  }
};

TEST_F(ClusterExample, GivesTheResultsOfTheLocalRunToTheLastDigit) {
  factory = std::make_unique<RunningFactory>(
      std::vector<std::string>{"--simulator", TANKSIM, "--root", (folder / "cases").string()});
  Copy("case");
  Copy("cluster");
  SetPort();
  Run("case");
  Run("cluster");
  for (const char* table : {"wells.csv", "inflow.csv", "field.csv"}) {
    const std::string local = TestFolder::Read(folder / "case" / table);
    EXPECT_GT(local.size(), 1000u) << table;
    EXPECT_EQ(local, TestFolder::Read(folder / "cluster" / table)) << table;
  }
  factory->AwaitLog("the driver has shut the simulator down");
}

}  // namespace
}  // namespace gantry::test
