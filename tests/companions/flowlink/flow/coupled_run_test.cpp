// Coupled runs with OPM Flow itself: host, module, adapter and flow together.

#include <map>

#include "flow_fixture.h"
#include "flowlink/result_file.h"
#include "program.h"

namespace gantry::flowlink::test {
namespace {

namespace fs = std::filesystem;
using fieldrun::test::Outcome;
using fieldrun::test::Table;

constexpr double kAtmosphere = 14.696;

class FlowRun : public WithFlow {
 protected:
  Outcome Run(const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"run",         (folder_ / "flow.toml").string(),
                                          "--simulator", FLOWLINK,
                                          "--output",    (folder_ / "out").string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return fieldrun::test::RunFieldrun(folder_, arguments);
  }
};

/// How many arrays of a name a file of flow holds; -1 when it isn't whole.
int CountArrays(const fs::path& file, const std::string& name) {
  if (!ResultFile(file).IsWhole()) return -1;
  const std::string bytes = gantry::test::TestFolder::Read(file);
  int count = 0;
  for (size_t at = bytes.find(name); at != std::string::npos; at = bytes.find(name, at + 1))
    ++count;
  return count;
}

/// The reference is flow alone on the same report steps.
TEST_F(FlowRun, PassingTheDecksOwnControlsGivesFlowsOwnTenYears) {
  Copy(ODEH);
  const Outcome outcome = Run();
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Table wells(folder_ / "out" / "wells.csv");
  const Table field(folder_ / "out" / "field.csv");
  const Table reference(REFERENCE);
  ASSERT_EQ(reference.Rows(), 10U);
  for (size_t year = 0; year < reference.Rows(); ++year) {
    const auto step = static_cast<size_t>(reference.Number(year, "step")) - 1;
    const size_t producer = 2 * step;
    const std::map<const char*, double> found = {
        {"oil total (STB)", field.Number(step, "total oil (STB)")},
        {"gas-oil ratio (Mscf/STB)", 1e3 * wells.Number(producer, "reported gas (MMscf/d)") /
                                         wells.Number(producer, "reported oil (STB/d)")},
        {"bottom-hole pressure (psia)",
         wells.Number(producer, "reported pressure (psig)") + kAtmosphere}};
    for (const auto& [what, value] : found) {
      const double expected = reference.Number(year, what);
      EXPECT_NEAR(value, expected, 1e-3 * expected) << what << " of step " << step;
    }
  }
  const fs::path written = folder_ / "out" / "ODEH_FLOW.flow";
  EXPECT_EQ(CountArrays(written / "ODEH_FLOW.UNRST", "SEQNUM  "), 120);
  EXPECT_EQ(CountArrays(written / "ODEH_FLOW.UNSMRY", "SEQHDR  "), 120);
  EXPECT_EQ(gantry::test::TestFolder::Read(written / "ODEH_FLOW.log").find("Uncaught"),
            std::string::npos);
  WaitForAll();
}

/// As on a full disk: no file can be written in full. What else goes wrong is told by the sessions.
TEST_F(FlowRun, OnAFullDiskEndsWithATextAndLeavesNothingRunning) {
  Copy(ODEH);
  const fs::path program =
      folder_.Write("flow", "#!/bin/sh\ntrap '' XFSZ\nulimit -f 60\nexec /usr/bin/flow \"$@\"\n");
  fs::permissions(program, fs::perms::owner_all);
  ::setenv("PATH", (folder_.Path().string() + ":" + ::getenv("PATH")).c_str(), 1);
  const Outcome outcome = Run({"--steps", "3"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("flow couldn't write its results", outcome.err.find("fieldrun: ")),
            std::string::npos)
      << outcome.err;
  WaitForAll();
}

}  // namespace
}  // namespace gantry::flowlink::test
