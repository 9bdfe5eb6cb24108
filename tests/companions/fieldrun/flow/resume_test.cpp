// A run in OPM Flow that was killed and goes on from flow's restart files. Needs flow.

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "program.h"
#include "support/free_ports.h"

namespace gantry::fieldrun::test {
namespace {

class ResumedInFlow : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v flow >/dev/null") != 0) {
      GTEST_SKIP() << "flow isn't installed (Debian package libopm-simulators-bin)";
    }
    std::filesystem::copy(EXAMPLES "/odeh", folder_ / "odeh");
  }
  Outcome Run(const std::string& arguments, const std::string& behind = "") const {
    gantry::test::StartSimulatorsOnFreePorts();
    const std::string run = "echo $$; exec " FIELDRUN " " + arguments + " -s " FLOWLINK;
    return RunInFolder(folder_, "sh", {"-c", "sh -c '" + run + "'" + behind});
  }

  const gantry::test::TestFolder folder_;
};

TEST_F(ResumedInFlow, GivesWhatOneGivesThatWasNeverStopped) {
  ASSERT_EQ(Run("run odeh/flow.toml -n 12 -o whole").status, 0);
  const Outcome killed =
      Run("run odeh/flow.toml -o left",
          " | { read pid; while read step rest; do [ \"$step\" != 7 ] || { kill -9 $pid; exit; }; "
          "done; exit 9; }");
  ASSERT_EQ(killed.status, 0) << killed.err;
  const std::string done = std::to_string(Table(folder_ / "left/field.csv").Rows());
  // What flow was writing when it was killed may end anywhere.
  std::ofstream(folder_ / "left/ODEH_FLOW.flow/ODEH_FLOW.UNRST", std::ios::app) << "half";
  const Outcome resumed = Run("resume left -n $((12 - " + done + "))");
  ASSERT_EQ(resumed.status, 0) << resumed.err;

  const Table whole(folder_ / "whole/field.csv");
  const Table left(folder_ / "left/field.csv");
  ASSERT_EQ(left.Rows(), 12U);
  for (size_t month = 0; month < 12; ++month) {
    for (const char* column : {"oil (STB/d)", "gas (MMscf/d)", "total oil (STB)"}) {
      const double value = whole.Number(month, column);
      EXPECT_NEAR(left.Number(month, column), value, 0.005 * value) << column << " " << month;
    }
  }

  std::string deck = gantry::test::TestFolder::Read(folder_ / "odeh/ODEH.DATA");
  folder_.Write("odeh/ODEH.DATA", deck.replace(deck.find("20000 4* 1000 /"), 5, "19999"));
  const Outcome changed = Run("resume left -n 1");
  EXPECT_EQ(changed.status, 1);
  EXPECT_NE(changed.err.find("is of another deck, or this one has changed since"),
            std::string::npos)
      << changed.err;
}

}  // namespace
}  // namespace gantry::fieldrun::test
