// The adapter beside a script in flow's place, which finds solutions or none as a test wants it.

#include <gtest/gtest.h>

#include "flowlink/flow_simulator.h"
#include "support/test_folder.h"

namespace gantry::flowlink {
namespace {

namespace fs = std::filesystem;

/// One producer: 40 under the deck's limits, and with others up to 75. A report step is 10 days.
constexpr const char* kScript = R"(#!/usr/bin/env python3
import json, os, re, socket, sys
end = socket.socket(fileno=int(os.environ["FLOWLINK_SOCKET"]))
lines = end.makefile("r")
solved = sys.argv[-2].split("=")[1].split(",")
deck = open(sys.argv[-1]).read()
is_run = "00:00:43" not in deck
def say(**message):
    end.sendall((json.dumps(message) + "\n").encode())
def values(oil):
    told = {"WOPR": oil, "WBHP": 400.0 - oil}
    return {"P": [told.get(name, 0.0) for name in vectors]}
vectors = json.loads(lines.readline())["vectors"]
well = {"producer": True, "status": "OPEN", "limits": {"bhp_target": 100, "oil_rate": 50}}
say(event="model", wells=["P"], start=[2020, 1, 1, 0, 0, 0], deck=[{"days": 0, "wells": {"P": well}}])
begun = report = int((re.findall("'A' [0-9]+", deck) or ["'A' 0"])[0][4:])
order = {"do": "advance"}
while order["do"] != "finish":
    if order["do"] == "advance":
        report += 1
        days = 10 * report if is_run else 10 * begun + 0.0005
        say(event="stop", days=days, report=report, last=False, values=values(40))
    else:
        found = str(order["days"]) in solved and not (is_run and "begin" in solved)
        say(event="answers", answers=[
            {"values": values(min([75] + [n for _, name, n in limits if name == "WUFLORAT"]))
             if found else None, "said": "Error: no luck with P"} for limits in order["sets"]])
    line = lines.readline()
    order = json.loads(line)
    open(os.path.join(os.path.dirname(sys.argv[-1]), "orders"), "a").write(line)
)";

const std::string kDeck =
    "RUNSPEC\nSTART\n 1 JAN 2020 /\nOIL\nSOLUTION\nSCHEDULE\nWCONPROD\n P OPEN ORAT 50 4* 100 /\n"
    "/\nTSTEP\n 2*10 /\nWELTARG\n P ORAT 45 /\n/\nTSTEP\n 2*10 /\n";

class ScriptedFlow : public ::testing::Test {
 protected:
  /// `solved`: the days of the tiny steps for which there is a solution; "begin": only at first.
  void Start(const std::string& solved, const std::string& more = "") {
    flow_.reset();
    LinkSettings settings;
    settings.deck = folder_.Write("A.DATA", kDeck + more);
    settings.program = folder_.Write("flow", kScript);
    fs::permissions(settings.program, fs::perms::owner_all);
    settings.grid.kind = ReportGrid::Kind::kDeck;
    settings.keptLimits = {"bottom_hole_pressure"};
    settings.wells = wells_;
    settings.options = {"--solved=" + solved};
    flow_ = std::make_unique<FlowSimulator>(settings, "A", folder_ / "A.flow");
    flow_->ContinueToFirstNewton();
  }
  void Limit(double rate) { flow_->SetConstraints(0, {{{"OIL_PRODUCTION_RATE", rate, "USER"}}}); }
  double Oil() { return flow_->WellNumber(0, *flow_->FindWellNumber("OIL_PRODUCTION_RATE")); }
  std::string Written(const std::string& name) const {
    return gantry::test::TestFolder::Read(folder_ / "A.flow" / name);
  }
  void ExpectNote(const std::string& text) const {
    EXPECT_NE(Written("A.warnings").find(text), std::string::npos) << text << Written("A.warnings");
  }

  gantry::test::TestFolder folder_;
  std::vector<std::string> wells_;
  std::unique_ptr<FlowSimulator> flow_;
};

TEST_F(ScriptedFlow, IsAskedWithOtherStepsWhereItFindsNoSolution) {
  const std::string noted =
      "warning: day 0.0005: flow found no solution for well P at ORAT 1e+06, BHP 100 (Error: no "
      "luck with P); ";
  const struct {
    const char* solved;
    double oil;
    const char* note;
  } cases[] = {{"0.0005", 75, nullptr},
               {"0.005,0.05", 75, "answered with a step of 0.005 days"},
               {"5e-05", 75, "answered with a step of 5e-05 days"},
               {"", 40, "what the wells make now stands in"}};
  for (const auto& [solved, oil, note] : cases) {
    Start(solved);
    Limit(1e6);
    EXPECT_EQ(Oil(), oil) << solved;
    EXPECT_EQ(Written("A.warnings").find("no solution") == std::string::npos, note == nullptr);
    if (note != nullptr) ExpectNote(noted + note);
  }
}

TEST_F(ScriptedFlow, IsTakenAtItsWordOfTheStepBeforeWhereItFindsNoSolutionAtAll) {
  Start("0.0005,begin");
  Limit(1e6);
  EXPECT_EQ(Oil(), 75);
  for (const char* ratio : {"GAS_OIL_RATIO", "WATER_CUT", "WATER_OIL_RATIO"}) {
    EXPECT_EQ(flow_->WellNumber(0, flow_->FindWellNumber(ratio).value()), 0);
  }
  Limit(20);
  flow_->ContinueUntil(10);
  ExpectNote(":7: WCONPROD of 2020-01-01 gives way to the host's limits for P");
  Limit(1e5);
  EXPECT_EQ(Oil(), 40) << "nothing is known of these limits";
  ExpectNote("what the wells make now stands in");
  Limit(1e6);
  EXPECT_EQ(Oil(), 75);
  ExpectNote("day 10: flow found no solution for well P at ORAT 1e+06, BHP 100 ");
  ExpectNote("the answer of the step before stands in");
}

TEST_F(ScriptedFlow, HoldsAWellByItsPressureThatIsToGiveAllItCan) {
  for (const double rate : {75.0, 70.0}) {
    Start("0.0005");
    Limit(1e6);
    EXPECT_EQ(Oil(), 75);
    Limit(0.9 * 75);
    EXPECT_DOUBLE_EQ(Oil(), 0.9 * 75);
    flow_->SetConstraints(
        0, {{{"BOTTOM_HOLE_PRESSURE", 90, "USER"}, {"OIL_PRODUCTION_RATE", rate, "USER"}}});
    flow_->ContinueUntil(10);
    const std::string held = rate < 75.0 ? "70 1* 1* 1* 1* 100 /" : "750 1* 1* 1* 1* 100 /";
    EXPECT_NE(Written("A.DATA").find("'P' OPEN ORAT " + held), std::string::npos) << held;
    EXPECT_EQ(Oil(), 40) << "what the run has just done";
  }
}

TEST_F(ScriptedFlow, RefusesToTakeOverWellsThatAreTheDecks) {
  wells_ = {"I*"};
  Start("0.0005");
  EXPECT_THROW(Limit(20), simulator::RequestRefused);
  wells_ = {};
  Start("0.0005", "WELTARG\n P ORAT FUMOST /\n/\nTSTEP\n 10 /\n");
  EXPECT_THROW(Limit(20), simulator::RequestRefused) << "held by a quantity";
}

TEST_F(ScriptedFlow, IsToldWhatToDoAsItIsWritten) {
  Start("0.0005");
  Limit(1e6);
  Oil();
  Limit(0.9 * 75);
  Oil();
  flow_->SetStatus(0, "SURFACE_SHUTIN", "USER");
  flow_->ContinueUntil(10);
  flow_->SetStatus(0, "OPEN", "USER");
  Limit(20);
  flow_->SetUptime(0, 0.5);
  flow_->ContinueUntil(20);
  flow_->ContinueUntil(5);
  EXPECT_EQ(flow_->Position().days, 10.0005) << "by a run from the next stop";
  flow_->ContinueUntil(20);
  flow_.reset();
  EXPECT_EQ(Written("orders"), gantry::test::TestFolder::Read(ORDERS_TO_FLOW));
}

}  // namespace
}  // namespace gantry::flowlink
