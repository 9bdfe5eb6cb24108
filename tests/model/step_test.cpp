// The step: what goes to the simulator before it runs on, and what comes of a failure.

#include <algorithm>
#include <cmath>

#include "model/ext_model.h"
#include "model/model_fixture.h"

namespace gantry::test {
namespace {

std::string Status(const std::string& wells, const std::string& words) {
  return "SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{" + wells + "} VALUES{" + words +
         "}";
}
std::string Uptime(const std::string& wells, const std::string& fractions) {
  return "SET SETWELLS SETITEM{UPTIME_FRACTION} WELNAMES{" + wells + "} VALUES{" + fractions + "}";
}
std::string Constraint(const std::string& well, const std::string& item, const std::string& value) {
  return " WELLNAME{" + well + "} ITEMS{" + item + "} VALUES{" + value + "} SETTERS{USER}";
}
const std::string kConstraints = "SET SETWCONSTRAINTS";

class Step : public ModelTest {
 protected:
  Step() {
    peer.wells = {{.name = "P1"},
                  {.name = "P2"},
                  {.name = "W1", .type = "WATER_INJECTOR"},
                  {.name = "G1", .type = "GAS_INJECTOR"}};
  }

  int32_t Shut(int32_t well, int32_t code) {
    *point = {};
    point->well = well;
    point->isShut = 1;
    point->shutInCode = code;
    return Command(EXT_SET_OP_PT, point.get());
  }
};

TEST_F(Step, SendsStatusUptimeAndConstraintsBeforeItRuns) {
  BeginRun({0, 1, 2, 3});
  Operate(0, 400.0, 100.0, 0.25);
  Operate(2, 0.0, 700.0, 0.0, 1000.0, 0.25);
  Operate(3, 0.0, 0.0, 2.5);
  Shut(1, 1);
  ASSERT_EQ(StepBy(10.0), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(),
            (Texts{Status("P1, P2, W1, G1", "OPEN, SURFACE_SHUTIN, OPEN, OPEN"),
                   Uptime("P1, W1, G1", "1, 0.75, 1"),
                   kConstraints + Constraint("P1", "LIQUID_PRODUCTION_RATE", "500") +
                       Constraint("W1", "WATER_INJECTION_RATE", "700") +
                       Constraint("G1", "GAS_INJECTION_RATE", "2500"),
                   "CONTINUE_UNTIL TIME{10}"}));
  EXPECT_EQ(Get("CurrentElapsedDays"), "10");
  EXPECT_EQ(Outcome(StepBy(std::nan(""))), "The length of the step is no number");
  EXPECT_EQ(peer.TakeOrders(), Texts{});
}

TEST_F(Step, ShutsAWellByTheHostsCode) {
  BeginRun({0});
  for (const auto& [code, word] : {std::pair{-1, "ALL_COMPLETIONS_SHUTIN"},
                                   {1, "SURFACE_SHUTIN"},
                                   {2, "ALL_COMPLETIONS_SHUTIN"},
                                   {7, "SURFACE_SHUTIN"}}) {
    Shut(0, code);
    ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0);
    EXPECT_EQ(peer.TakeOrders(), Texts{Status("P1", word)}) << code;
  }
  Set("CaseDetails.CloseUnconnectedWells", "1");
  Command(EXT_APPLY_OPERATING_POINTS);
  EXPECT_EQ(peer.TakeOrders().front(), Status("P1, P2, W1, G1",
                                              "SURFACE_SHUTIN, ALL_COMPLETIONS_SHUTIN, "
                                              "ALL_COMPLETIONS_SHUTIN, ALL_COMPLETIONS_SHUTIN"));
}

TEST_F(Step, SendsItsOrdersOnceHoweverTheyWereAskedFor) {
  BeginRun({0});
  Operate(0, 100.0, 0.0, 0.0);
  ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0);
  EXPECT_EQ(peer.TakeOrders().size(), 3u);
  StepBy(1.0);
  EXPECT_EQ(peer.TakeOrders(), Texts{"CONTINUE_UNTIL TIME{1}"});
  StepBy(1.0);
  EXPECT_EQ(peer.TakeOrders().size(), 4u) << "the next step sends them again";
  ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0);
  peer.CutAt("SETWCONSTRAINTS");
  EXPECT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 1);
  EXPECT_EQ(StepBy(1.0), 1);
  EXPECT_EQ(static_cast<CExtModel*>(model)->SimulatorDays(), 2.0)
      << "no step is made on orders that have not all arrived";
}

TEST_F(Step, ReadsTheConnectedWellsAndRefusesOneThatItDoesNotKnow) {
  ReadWells({0, 2});
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(inflow->pointCount, 10);
  ASSERT_EQ(ReadInflow(1, *inflow), 0);
  EXPECT_EQ(inflow->pointCount, 0);
  EXPECT_EQ(inflow->isShut, 1);
  peer.ChangeWells([this](std::vector<SimulatedWell>& wells) {
    peer.tellsOfAllWells = true;
    std::rotate(wells.begin(), wells.begin() + 1, wells.end());
  });
  EXPECT_EQ(Outcome(Command(EXT_SET_TIMESTEP_DATA)), "done")
      << "wells that weren't asked for are no harm";
  peer.ChangeWells([](std::vector<SimulatedWell>& wells) { wells.push_back({.name = "X1"}); });
  EXPECT_EQ(Outcome(Command(EXT_SET_TIMESTEP_DATA)),
            "Unknown well returned from call to simulator");
}

TEST_F(Step, NeedsASimulatorThatHasNotComeToItsEnd) {
  for (const ExtCommand command : {EXT_SET_TIMESTEP_DATA, EXT_APPLY_OPERATING_POINTS}) {
    EXPECT_EQ(Outcome(Command(command)), "The simulation process is not running.");
  }
  peer.endOfRun = 15.0;
  BeginRun({0});
  EXPECT_EQ(Outcome(StepBy(10.0)), "done");
  EXPECT_EQ(Outcome(StepBy(10.0)), "The Intersect simulation ended");
  EXPECT_EQ(Get("CurrentElapsedDays"), "10");
}

TEST_F(Step, SaysWhereAConnectionBrokeAndStartsAnew) {
  BeginRun({0});
  TimestepRecord step = {};
  step.stepDays = 1.0;
  for (const auto& [message, command, place] :
       {std::tuple{"QWELLS", EXT_SET_TIMESTEP_DATA, " while getting well data (SetTimestepData)"},
        {"SETWELLS", EXT_APPLY_OPERATING_POINTS, " (Timestep)"},
        {"CONTINUE_UNTIL", EXT_TIMESTEP, " (Timestep)"}}) {
    Operate(0, 100.0, 0.0, 0.0);
    peer.CutAt(message);
    EXPECT_EQ(Failure(Command(command, &step)),
              std::string("Connection to simulator failed") + place + ": ");
    EXPECT_EQ(Get("IsRunning"), "1") << "the host decides whether to stop";
    peer.CutAt("");
    EXPECT_EQ(Command(EXT_CLOSE_SIMULATOR), 0);
    ASSERT_EQ(Outcome(StartRun({0})), "done");
  }
  EXPECT_EQ(Outcome(StepBy(1.0)), "done");
}

class CompositionalStep : public Step {
 protected:
  CompositionalStep() { peer.components = {"C1", "C2"}; }

  /// One step up to the host's answer: the wells are read and their inflow handed out.
  void HandOut(std::vector<int32_t> wells) {
    ReadWells(wells);
    for (const int32_t well : wells) ASSERT_EQ(ReadInflow(well, *inflow), 0);
    peer.TakeOrders();
  }
};

TEST_F(CompositionalStep, TakesTheRatesFromTheInflowAtTheHostsPressureAndShutsADeadWell) {
  HandOut({0, 1});
  Operate(0, 1.0, 1.0, 1.0, 3000.0);  // no flow at the reservoir's pressure
  Operate(1, 1.0, 1.0, 1.0, 2500.0);
  ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(),
            (Texts{Status("P1, P2", "ALL_COMPLETIONS_SHUTIN, OPEN"), Uptime("P2", "1"),
                   kConstraints + Constraint("P2", "LIQUID_PRODUCTION_RATE", "500")}));
}

TEST_F(CompositionalStep, SendsTheCompositionOfAnInjectedGas) {
  HandOut({3});
  point->fluid.componentCount = 2;
  point->well = 3;
  point->gasRate[0] = 0.5;
  point->pressure[0] = 3000.0;
  point->moleFractions[0][0] = 0.75;
  point->moleFractions[0][1] = 0.25;
  Command(EXT_SET_OP_PT, point.get());
  // A gas injector's inflow makes no difference between pressures, so any is as good.
  ASSERT_EQ(Command(EXT_APPLY_OPERATING_POINTS), 0);
  EXPECT_EQ(peer.TakeOrders().back(),
            "SET SETWSTRE STNAME{G1_ginj} STCMPVALUES{0.75, 0.25} "
            "STCMPNAMES{TOTAL_MOLE_FRACTION[1], TOTAL_MOLE_FRACTION[2]} STPHASE{}");
}

}  // namespace
}  // namespace gantry::test
