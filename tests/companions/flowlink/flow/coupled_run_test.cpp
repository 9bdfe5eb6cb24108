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
  Outcome Run(const std::string& caseFile, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {"run",         (folder_ / caseFile).string(),
                                          "--simulator", FLOWLINK,
                                          "--output",    (folder_ / "out").string()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return fieldrun::test::RunFieldrun(folder_, arguments);
  }
  void Change(const std::string& file, const std::string& part, const std::string& replacement) {
    std::string text = gantry::test::TestFolder::Read(folder_ / file);
    const size_t at = text.find(part);
    ASSERT_NE(at, std::string::npos) << part;
    folder_.Write(file, text.replace(at, part.size(), replacement));
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
  const Outcome outcome = Run("flow.toml");
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

TEST_F(FlowRun, IsCheckedByTheHostBeforehand) {
  Copy(ODEH);
  Change("ODEH.DATA", "WELSPECS", "ACTIONX\n/\nGCONPROD\n/\nWELSPECS");
  const Outcome outcome = fieldrun::test::RunFieldrun(
      folder_, {"check", (folder_ / "flow.toml").string(), "--simulator", FLOWLINK});
  EXPECT_EQ(outcome.status, 2) << outcome.err;
  EXPECT_NE(outcome.out.find("ODEH.DATA:130: warning: ACTIONX "), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("ODEH.DATA:132: GCONPROD holds"), std::string::npos) << outcome.out;
}

struct Fault {
  const char* name;
  const char* file;
  const char* part;
  const char* replacement;
  const char* text;
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class FaultyRun : public FlowRun, public ::testing::WithParamInterface<Fault> {
 protected:
  /// A flow that can write no file in full, as on a full disk.
  void ProvideSmallDisk() {
    const fs::path program =
        folder_.Write("small-disk", "#!/bin/sh\ntrap '' XFSZ\nulimit -f 60\nexec flow \"$@\"\n");
    fs::permissions(program, fs::perms::owner_all);
    ::setenv("PATH", (folder_.Path().string() + ":" + ::getenv("PATH")).c_str(), 1);
  }
};

TEST_P(FaultyRun, ReachesTheHostAsATextAndLeavesNothingRunning) {
  const Fault& fault = GetParam();
  Copy(ODEH);
  Change(fault.file, fault.part, fault.replacement);
  ProvideSmallDisk();
  const Outcome outcome = Run("flow.toml", {"--steps", "3"});
  EXPECT_EQ(outcome.status, 1);
  const size_t ofHost = outcome.err.find("fieldrun: ");
  ASSERT_NE(ofHost, std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find(fault.text, ofHost), std::string::npos) << outcome.err;
  WaitForAll();
}

INSTANTIATE_TEST_SUITE_P(
    Flow, FaultyRun,
    ::testing::Values(
        Fault{"UnknownKey", "ODEH_FLOW.afi", "temperature", "temprature",
              "ODEH_FLOW.afi:5: unknown key 'temprature'"},
        Fault{"NoFlow", "ODEH_FLOW.afi", "temperature = 200.0", "flow = \"no-such-flow\"",
              "can't start no-such-flow: No such file or directory"},
        Fault{"DiskFull", "ODEH_FLOW.afi", "temperature = 200.0", "flow = \"small-disk\"",
              "flow couldn't write its results"},
        Fault{"NoSuchKeyword", "ODEH.DATA", "DISGAS", "DISGUST",
              "ODEH.DATA:15: flow ended with status 1: Error: Unrecoverable errors"},
        Fault{"NoSuchMode", "ODEH.DATA", "ORAT", "ORXT",
              "ODEH.DATA:139: flow ended with status 1: Error: Unrecoverable errors"},
        Fault{"NoConvergence", "ODEH_FLOW.afi", "temperature = 200.0",
              "flow_options = [\"--solver-max-restarts=1\", \"--newton-max-iterations=1\"]",
              "Solver failed to converge"}),
    [](const auto& fault) { return fault.param.name; });

}  // namespace
}  // namespace gantry::flowlink::test
