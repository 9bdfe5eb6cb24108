#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

#include "scripted_reservoir.h"

namespace gantry::test {
namespace {

/// The pressure that the library gives the well's lowest rate; it tells one ratio from another.
double PressureOfLowestRate(ScriptedReservoir& reservoir, size_t index) {
  auto well = reservoir.Wells()[index];
  well.rate = 3000.0;
  const auto table = std::make_unique<_tGetSetData>();
  const auto state = std::make_unique<_tGetSetData>();
  well.FillTable(*table);
  well.FillCurrent(*state);
  TransformIPR(reservoir.Handle(), well.name.c_str(), state.get(), table.get());
  return table->pressure[table->pointCount - 1];
}

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
  const double first[] = {PressureOfLowestRate(reservoir, 0), PressureOfLowestRate(reservoir, 1)};
  EXPECT_NEAR(first[0], reservoir.Wells()[0].FlowingPressure(0.0), 25.0);
  EXPECT_NEAR(first[1], reservoir.Wells()[1].FlowingPressure(0.0), 25.0);

  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  EXPECT_NEAR(PressureOfLowestRate(reservoir, 0), first[0], 1e-6);
  EXPECT_NEAR(PressureOfLowestRate(reservoir, 1), first[1], 1e-6);
}

TEST(WellTest, KeepsTheEarlierRatiosWhateverCallFails) {
  ScriptedReservoir reservoir(TwoWells());
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  const int callsOfOneTest = reservoir.calls;
  const double before = PressureOfLowestRate(reservoir, 0);
  for (int failing = 1; failing <= callsOfOneTest; ++failing) {
    reservoir.calls = 0;
    reservoir.failingCall = failing;
    reservoir.Wells()[0].blockIndex = 7.0;
    EXPECT_NE(SetupIPR(nullptr, reservoir.Handle()), 0) << failing;
    EXPECT_EQ(reservoir.calls, failing) << "went on after a failure";
    reservoir.Wells()[0].blockIndex = 10.0;
    EXPECT_DOUBLE_EQ(PressureOfLowestRate(reservoir, 0), before) << failing;
  }
  reservoir.failingCall = 0;
  EXPECT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0) << "after the failures";
}

TEST(WellTest, EndsWhenTheSimulatorsTimeStandsStill) {
  ScriptedReservoir reservoir(TwoWells());
  reservoir.timeStandsStill = true;
  EXPECT_NE(SetupIPR(nullptr, reservoir.Handle()), 0);
}

TEST(WellTest, PassesOverADeadWell) {
  auto wells = TwoWells();
  wells[0].blockIndex = wells[0].regionIndex = 1e-12;
  ScriptedReservoir reservoir(wells);
  ASSERT_EQ(SetupIPR(nullptr, reservoir.Handle()), 0);
  EXPECT_EQ(std::ranges::count(reservoir.log, "flow"), 1);
  EXPECT_NEAR(PressureOfLowestRate(reservoir, 1), 3500.0, 25.0);
}

}  // namespace
}  // namespace gantry::test
