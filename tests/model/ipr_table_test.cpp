#include "model/ipr_table.h"

#include <gtest/gtest.h>

#include "boundary/error_text.h"

namespace gantry {
namespace {

using Values = std::vector<double>;

TEST(TableSearch, FollowsTheFirstPairThatBracketsTheValue) {
  struct Case {
    Values x, y;
    double value, extrapolated, held;
  };
  const std::vector<Case> cases = {
      {{1, 2, 4}, {10, 20, 40}, 3, 30, 30},
      {{4, 2, 1}, {40, 20, 10}, 3, 30, 30},
      {{1, 2, 4}, {10, 20, 40}, 5, 50, 40},
      {{1, 2, 4}, {10, 20, 40}, 0, 0, 10},
      {{4, 2, 1}, {40, 20, 10}, 0, 0, 10},
      {{4, 2, 1}, {40, 20, 10}, 5, 50, 40},
      {{5, 5}, {10, 20}, 5, 15, 15},
      {{3, 3.00005, 4}, {10, 20, 30}, 3.00001, 15, 15},
      {{1, 3, 2, 4}, {1, 3, 7, 9}, 2.5, 2.5, 2.5},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(InterpolateTable(c.x, c.y, c.value, true), c.extrapolated) << c.value;
    EXPECT_DOUBLE_EQ(InterpolateTable(c.x, c.y, c.value, false), c.held) << c.value;
  }
  EXPECT_EQ(InterpolateTable(Values{1}, Values{1}, 1, true), EXT_FAILED_NUMBER);
}

IPRPoint Point(double pressure, double oil, double water, double gas) {
  return {
      .Pressure = pressure, .OilRate = oil, .GasRate = gas, .WaterRate = water, .Composition = {}};
}

TEST(IPRTable, EvaluatesAllColumnsAtAPressure) {
  const IPRTable table(std::vector{Point(2000, 80, 20, 1), Point(3000, 0, 0, 0)}, true);
  EXPECT_EQ(table.Evaluate(2500), (IPRTable::RowValues{2500, 50, 40, 10, 0.5, 0, 0}));
  EXPECT_EQ(table.Interpolate(IPRTable::kGasColumn, 0.25, IPRTable::kPressureColumn), 2750);
  EXPECT_EQ(table.Interpolate(IPRTable::kGasColumn, 0.25, IPRTable::kGasColumn), 0.25);
  EXPECT_EQ(table.Interpolate(IPRTable::kGasColumn, 0.25, 7), EXT_FAILED_NUMBER);
}

TEST(IPRTable, IsDeadWithoutTwoPointsOrWithoutFlow) {
  EXPECT_TRUE(IPRTable(std::vector{Point(1, 100, 0, 0)}, true).IsDead());
  EXPECT_TRUE(IPRTable(std::vector(2, Point(1, 0.000004, 0.000005, 0.00001)), true).IsDead());
  EXPECT_FALSE(IPRTable(std::vector(2, Point(1, 0, 0, -0.1)), true).IsDead());
}

TEST(IPRTable, TakesTenPointsAndNoMore) {
  EXPECT_EQ(IPRTable(std::vector(12, Point(1, 2, 3, 4)), true).Count, 10);
}

}  // namespace
}  // namespace gantry
