#include "fieldrun/network/network.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

TubingSpec Tubing(double depth, double diameter) {
  TubingSpec tubing;
  tubing.name = "t";
  tubing.depth = depth;
  tubing.diameter = diameter;
  return tubing;
}

TEST(Tubing, AddsTheFrictionOfASinglePhaseByHandCalculation) {
  // 10000 STB/d of water in 4 inches: v = 56150 / 86400 / 0.087266 = 7.447 ft/s,
  // Re = 1488 * 62.43 * 7.447 * 0.33333 / 0.5 = 461200, roughness 0.00015: f = 0.01527
  // (Swamee-Jain), dp/dL = 0.01527 * 62.43 * 7.447^2 / (2 * 32.174 * 0.33333) / 144 = 0.01712
  // psi/ft.
  const double foot =
      TubingColumn(Tubing(1000, 4), {0.85, 0.7, 1.0}).FootPressure(0, {0, 10000, 0});
  EXPECT_NEAR(foot - 1000 * 62.43 / 144, 17.12, 0.15);
}

TEST(Tubing, WeighsGasByTheRealGasLaw) {
  // A slow column of 0.65 gas at a mean 540 R and z of about 0.85: p exp(0.01875 g H / (z T)).
  TubingSpec tubing = Tubing(5000, 12);
  tubing.wellheadTemperature = 80;
  tubing.bottomTemperature = 80;
  const double foot =
      TubingColumn(tubing, {0.85, 0.65, 1.0}).FootPressure(1000 - 14.696, {0, 0, 0.1});
  const double expected = 1000 * std::exp(0.01875 * 0.65 * 5000 / (0.85 * 539.67));
  EXPECT_NEAR(foot + 14.696, expected, 0.01 * expected);
}

TEST(LiftTable, KeepsCloseToTheTubingThatItStandsFor) {
  const struct {
    double depth, diameter, head;
    Gravities gravities;
  } kCases[] = {{7900, 3.5, 200, {}}, {9000, 2.4, 150, {0.82, 0.8, 1.05}}, {3000, 4.5, 50, {}}};
  std::mt19937 random(1);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution(low, high)(random);
  };
  for (const auto& c : kCases) {
    const TubingSpec tubing = Tubing(c.depth, c.diameter);
    const TubingColumn column(tubing, c.gravities);
    LiftTable table(tubing, c.gravities, c.head);
    std::vector<double> errors;
    while (errors.size() < 2000) {
      const double liquid = std::exp(between(2, 10));
      const double waterCut = between(0, 1);
      const double gas = liquid * std::exp(between(-10, -6));
      const Rates rates{liquid * (1 - waterCut), liquid * waterCut, gas};
      const double foot = column.FootPressure(c.head, rates);
      if (foot < 5000) errors.push_back(std::abs(table.FootPressure(rates) - foot));
    }
    std::sort(errors.begin(), errors.end());
    EXPECT_LT(errors[errors.size() * 99 / 100], 3) << c.depth;
    EXPECT_LT(errors.back(), 10) << c.depth;
    EXPECT_EQ(table.FootPressure({0.5, 0, 0}), column.FootPressure(c.head, {0.5, 0, 0}));
  }
}

TEST(LiftTable, IsSharedByWellsOfOneTubingWhereThereAreEnough) {
  const WellSpec spec;
  const TubingSpec tubing = Tubing(8000, 3);
  const InflowCurve inflow({{3500, {}}, {500, {8100, 900, 4.86}}}, true);
  std::vector<NetworkWell> wells(17, NetworkWell(spec, inflow));
  for (NetworkWell& well : wells) well.tubing = &tubing;
  wells[16].manifoldPressure = 250;
  LiftTables tables;
  tables.Assign(wells);
  EXPECT_NE(wells[0].lift, nullptr);
  EXPECT_EQ(wells[0].lift, wells[15].lift);
  EXPECT_EQ(wells[16].lift, nullptr);
  SolveWell(wells[0]);
  wells[1].lift = nullptr;
  SolveWell(wells[1]);
  EXPECT_NEAR(wells[0].Point().pressure, wells[1].Point().pressure, 2);
}

}  // namespace
}  // namespace gantry::fieldrun
