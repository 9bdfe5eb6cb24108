#include <algorithm>

#include <gtest/gtest.h>

#include "scripted_reservoir.h"

namespace gantry::test {
namespace {

std::vector<ScriptedReservoir::Well> TwoWells() {
  return {{"P1", 4000.0, 10.0, 5.0}, {"P2", 3500.0, 20.0, 16.0}};
}

TEST(WellTest, FlowsAllWellsTogetherThenShutsThem) {
  ScriptedReservoir reservoir(TwoWells());
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  const std::vector<std::string> order = {"restart", "advance", "inflow",  "flow",    "inflow",
                                          "flow",    "advance", "advance", "advance", "inflow",
                                          "current", "inflow",  "current", "shut",    "shut",
                                          "advance", "advance", "advance", "inflow",  "inflow"};
  EXPECT_EQ(reservoir.log, order);
}

TEST(WellTest, FindsEachWellsOwnRatioAgainOnASecondTest) {
  ScriptedReservoir reservoir(TwoWells());
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  for (const size_t well : {0u, 1u}) {
    const double first = reservoir.PressureOfLowestRate(well);
    EXPECT_NEAR(first, reservoir.Wells()[well].FlowingPressure(0.0), 25.0);
    ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
    EXPECT_NEAR(reservoir.PressureOfLowestRate(well), first, 1e-6);
  }
}

TEST(WellTest, KeepsTheEarlierRatiosWhateverCallFailsAndEndsWhenTimeStandsStill) {
  ScriptedReservoir reservoir(TwoWells());
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  const int callsOfOneTest = reservoir.calls;
  const double before = reservoir.PressureOfLowestRate(0);
  for (int failing = 1; failing <= callsOfOneTest; ++failing) {
    reservoir.calls = 0;
    reservoir.failingCall = failing;
    reservoir.Wells()[0].blockIndex = 7.0;
    EXPECT_NE(SetupIPR(nullptr, reservoir.Handle()), 0) << failing;
    EXPECT_EQ(reservoir.calls, failing) << "went on after a failure";
    reservoir.Wells()[0].blockIndex = 10.0;
    EXPECT_DOUBLE_EQ(reservoir.PressureOfLowestRate(0), before) << failing;
  }
  reservoir.failingCall = 0;
  reservoir.timeStandsStill = true;
  EXPECT_NE(SetupIPR(nullptr, reservoir.Handle()), 0);
  reservoir.timeStandsStill = false;
  EXPECT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0) << "after the failures";
}

TEST(WellTest, PassesOverADeadWell) {
  auto wells = TwoWells();
  wells[0].blockIndex = wells[0].regionIndex = 1e-12;
  ScriptedReservoir reservoir(wells);
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  EXPECT_EQ(std::ranges::count(reservoir.log, "flow"), 1);
  EXPECT_NEAR(reservoir.PressureOfLowestRate(1), 3500.0, 25.0);
}

}  // namespace
}  // namespace gantry::test
