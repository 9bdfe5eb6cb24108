#include "fieldrun/network/network.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

// A straight-line inflow as a sweep leaves it: ten points, packed towards low rates, none at zero.
InflowCurve StraightInflow(double reservoirPressure, double index, double waterCut, double gor,
                           double lowest = 500) {
  std::vector<InflowPoint> points;
  for (int i = 0; i < 10; ++i) {
    const double liquid = index * (reservoirPressure - lowest) * std::pow(1 - 0.1 * i, 2.5);
    const double oil = liquid * (1 - waterCut);
    points.push_back(
        {reservoirPressure - liquid / index, {oil, liquid * waterCut, oil * gor * 1e-6}});
  }
  return InflowCurve(points, true);
}

WellSpec Producer(const std::string& name) {
  WellSpec spec;
  spec.name = name;
  return spec;
}

TubingSpec Tubing(double depth, double diameter) {
  TubingSpec tubing;
  tubing.name = "t";
  tubing.depth = depth;
  tubing.diameter = diameter;
  return tubing;
}

TEST(InflowCurve, TakesPointsInAnyOrderAndDropsWhatHasNoValue) {
  const InflowCurve curve({{2000, {300, 0, 0}},
                           {-9999.9999, {-9999.9999, -9999.9999, -9999.9999}},
                           {2500, {100, 0, 0}},
                           {std::nan(""), {1, 1, 1}},
                           {1000, {700, 0, 3.4e35}}},
                          true);
  EXPECT_EQ(curve.Points().size(), 3U);  // the two good ones and the shut end
  EXPECT_NEAR(curve.At(0).pressure, 2750, 1e-9);
  EXPECT_NEAR(curve.At(2).pressure, 2000, 1e-9);
}

TEST(InflowCurve, IsShutAtTheHigherOfTwoPointsOfOneRate) {
  const InflowCurve curve({{2500, {100, 0, 0}}, {2400, {100, 0, 0}}, {1000, {700, 0, 0}}}, true);
  EXPECT_EQ(curve.Points().front().pressure, 2500);
}

TEST(InflowCurve, IsDeadWithoutFlowOrWithFewerThanTwoPoints) {
  EXPECT_TRUE(InflowCurve({}, true).IsDead());
  EXPECT_TRUE(InflowCurve({{2000, {300, 0, 0}}}, true).IsDead());
  EXPECT_TRUE(InflowCurve({{2000, {}}, {1000, {}}}, true).IsDead());
  EXPECT_TRUE(InflowCurve({{2000, {-3, 0, 0}}, {1000, {-1, 0, 0}}}, true).IsDead());
}

TEST(InflowCurve, NeverPassesALimitOnTheWayFromShut) {
  // The oil rate rises, falls and rises again: only the first crossing is safe.
  const InflowCurve curve(
      {{4000, {0, 0, 0}}, {3000, {100, 0, 0}}, {2000, {50, 90, 0}}, {1000, {300, 100, 0}}}, true);
  const auto oil = [](const InflowPoint& point) { return point.rates.oil; };
  EXPECT_NEAR(curve.LargestOpening(oil, 80), 0.8, 1e-12);
  EXPECT_NEAR(curve.LargestOpening(oil, 100), 2.2, 1e-12);
  EXPECT_EQ(curve.LargestOpening(oil, 1000), curve.FullOpening());
}

TEST(Tubing, AddsTheFrictionOfASinglePhaseByHandCalculation) {
  // 10000 STB/d of water in 4 inches: v = 56150 / 86400 / 0.087266 = 7.447 ft/s,
  // Re = 1488 * 62.43 * 7.447 * 0.33333 / 0.5 = 461200, roughness 0.00015: f = 0.01527
  // (Swamee-Jain), dp/dL = 0.01527 * 62.43 * 7.447^2 / (2 * 32.174 * 0.33333) / 144 = 0.01712
  // psi/ft.
  const double foot = TubingFootPressure(Tubing(1000, 4), {0.85, 0.7, 1.0}, 0, {0, 10000, 0});
  EXPECT_NEAR(foot - 1000 * 62.43 / 144, 17.12, 0.15);
}

TEST(Tubing, WeighsGasByTheRealGasLaw) {
  // A slow column of 0.65 gas at a mean 540 R and z of about 0.85: p exp(0.01875 g H / (z T)).
  TubingSpec tubing = Tubing(5000, 12);
  tubing.wellheadTemperature = 80;
  tubing.bottomTemperature = 80;
  const double foot = TubingFootPressure(tubing, {0.85, 0.65, 1.0}, 1000 - 14.696, {0, 0, 0.1});
  const double expected = 1000 * std::exp(0.01875 * 0.65 * 5000 / (0.85 * 539.67));
  EXPECT_NEAR(foot + 14.696, expected, 0.01 * expected);
}

TEST(Tubing, IsLighterWithMoreGasUntilFrictionTakesOver) {
  const TubingSpec tubing = Tubing(8000, 3);
  const auto foot = [&](double gas) {
    return TubingFootPressure(tubing, {}, 200, {1000, 200, gas});
  };
  EXPECT_LT(foot(1.0), foot(0.2));
  EXPECT_GT(foot(30.0), foot(5.0));
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
  const WellSpec spec = Producer("P");
  const TubingSpec tubing = Tubing(8000, 3);
  std::vector<NetworkWell> wells(17, NetworkWell(spec, StraightInflow(3500, 3, 0.1, 600)));
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

// Heavy oil without gas at a small drawdown, gassy below the bubble point: a column that only a
// high rate can lift, so that inflow and tubing meet twice.
InflowCurve GassyWhenDrawnDown() {
  return InflowCurve({{2500, {100, 30, 0}},
                      {2300, {700, 200, 0.02}},
                      {1800, {2000, 600, 2.4}},
                      {1300, {3000, 900, 4.5}},
                      {900, {3600, 1100, 6.0}}},
                     true);
}

TEST(Well, TakesTheStableMeetingOfTwo) {
  const WellSpec spec = Producer("P");
  const TubingSpec tubing = Tubing(9000, 3);
  NetworkWell well(spec, GassyWhenDrawnDown());
  well.tubing = &tubing;
  well.manifoldPressure = 150;
  SolveWell(well);
  ASSERT_TRUE(well.isOpen);
  EXPECT_EQ(well.limitedBy, "tubing");
  const auto surplus = [&](double opening) {
    const InflowPoint at = well.curve.At(opening);
    return at.pressure - TubingFootPressure(tubing, {}, 150, at.rates);
  };
  EXPECT_NEAR(surplus(well.opening), 0, 1e-3);
  EXPECT_GT(surplus(well.opening - 0.05), 0);
  EXPECT_LT(surplus(well.opening + 0.05), 0);
  EXPECT_LT(surplus(0.5), 0) << "there is no second meeting, so that the test shows nothing";
}

TEST(Well, IsShutWhenTheReservoirCantLiftTheColumn) {
  const WellSpec spec = Producer("P");
  const TubingSpec tubing = Tubing(9000, 3);
  NetworkWell well(spec, StraightInflow(2000, 3, 0.9, 100));
  well.tubing = &tubing;
  well.manifoldPressure = 200;
  SolveWell(well);
  EXPECT_FALSE(well.Point().isOpen);
  EXPECT_EQ(well.Point().limitedBy, "can't lift");
  EXPECT_EQ(well.Point().rates.Size(), 0);
}

TEST(Well, ObeysItsTightestLimit) {
  struct Case {
    std::optional<double> WellSpec::*limit;
    double value;
    const char* reason;
    double liquid;
  };
  // Inflow 2 STB/d/psi from 3000 psig, a quarter of it water, GOR 800.
  const Case kCases[] = {
      {&WellSpec::maxLiquid, 1000, "liquid limit", 1000},
      {&WellSpec::maxOil, 1500, "oil limit", 2000},
      {&WellSpec::maxWater, 100, "water limit", 400},
      {&WellSpec::maxGas, 0.6, "gas limit", 1000},
      {&WellSpec::minBottomHolePressure, 2000, "minimum pressure", 2000},
      {&WellSpec::maxLiquid, 1e6, "inflow", 5000},
      {&WellSpec::maxLiquid, 0, "held at no rate", 0},
  };
  for (const Case& c : kCases) {
    WellSpec spec = Producer("P");
    spec.*(c.limit) = c.value;
    NetworkWell well(spec, StraightInflow(3000, 2, 0.25, 800));
    SolveWell(well);
    EXPECT_EQ(well.Point().limitedBy, c.reason);
    EXPECT_NEAR(well.Point().rates.Liquid(), c.liquid, 1e-6) << c.reason;
  }
}

InflowCurve Injectivity(double reservoirPressure, double index, double highest) {
  std::vector<InflowPoint> points;
  for (double part = 1; part > 0.05; part -= 0.1) {
    const double rate = part * index * (highest - reservoirPressure);
    points.push_back({reservoirPressure + rate / index, {0, rate, 0}});
  }
  return InflowCurve(points, false);
}

TEST(Injector, TakesItsRateOrThePressureThatHoldsIt) {
  const struct {
    std::optional<double> rate, pressure, most;
    double expected;
    const char* reason;
  } kCases[] = {{2000, {}, {}, 2000, "water rate"},
                {2000, {}, 3500, 1500, "maximum pressure"},
                {{}, 3200, {}, 1200, "pressure"},
                {90000, {}, {}, 3000, "inflow"}};
  for (const auto& c : kCases) {
    WellSpec spec;
    spec.kind = static_cast<int>(WellKind::kWaterInjector);
    spec.waterRate = c.rate;
    spec.bottomHolePressure = c.pressure;
    spec.maxBottomHolePressure = c.most;
    NetworkWell well(spec, Injectivity(2000, 1, 5000));
    SolveWell(well);
    EXPECT_NEAR(well.Point().rates.water, c.expected, 1e-6);
    EXPECT_NEAR(well.Point().pressure, 2000 + c.expected, 1e-6);
    EXPECT_EQ(well.Point().limitedBy, c.reason);
  }
}

class Group : public ::testing::Test {
 protected:
  // Full rates: 5000 each; water cuts 0.1, 0.5 and 0.8.
  Group() : specs_{Producer("A"), Producer("B"), Producer("C")} {
    const double waterCuts[] = {0.1, 0.5, 0.8};
    for (size_t i = 0; i < 3; ++i) {
      wells_.emplace_back(specs_[i], StraightInflow(3000, 2, waterCuts[i], 500));
    }
  }
  Rates Sum() const {
    Rates sum;
    for (const NetworkWell& well : wells_) sum += well.Point().rates;
    return sum;
  }

  std::vector<WellSpec> specs_;
  std::vector<NetworkWell> wells_;
  GroupSpec group_;
};

TEST_F(Group, ScalesAllWellsByTheSameFactor) {
  group_.name = "G";
  group_.maxLiquid = 9000;
  const auto reports = SolveNetwork(wells_, {group_});
  EXPECT_NEAR(Sum().Liquid(), 9000, 1e-3);
  for (const NetworkWell& well : wells_) EXPECT_NEAR(well.Point().rates.Liquid(), 3000, 1e-3);
  EXPECT_EQ(wells_[0].limitedBy, "group G: liquid");
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_NEAR(reports[0].before, 15000, 1e-6);
  EXPECT_NEAR(reports[0].after, 9000, 1e-3);
}

TEST_F(Group, RanksTheWorstWellsFirst) {
  group_.name = "G";
  group_.method = 1;
  group_.maxWater = 2000;  // 500 + 2500 + 4000 without it
  SolveNetwork(wells_, {group_});
  EXPECT_NEAR(wells_[0].Point().rates.water, 500, 1e-6);
  EXPECT_NEAR(wells_[1].Point().rates.water, 1500, 1e-3);
  EXPECT_FALSE(wells_[2].Point().isOpen);
}

TEST_F(Group, LetsWellsThatAreAlikeGiveWayTogether) {
  // Two wells whose water cuts differ by a hair share the cut; a ranking by the hair would shut
  // one.
  std::vector<NetworkWell> wells;
  wells.emplace_back(specs_[0], StraightInflow(3000, 2, 0.500, 500));
  wells.emplace_back(specs_[1], StraightInflow(3000, 2, 0.501, 500));
  group_.method = 1;
  group_.maxWater = 2000;
  SolveNetwork(wells, {group_});
  EXPECT_NEAR(wells[0].Point().rates.water, 1000, 5);
  EXPECT_NEAR(wells[1].Point().rates.water, 1000, 5);
}

TEST_F(Group, MeetsEveryLimitOfEveryGroup) {
  GroupSpec pair;
  pair.name = "pair";
  pair.wells = {"B", "C"};
  pair.maxWater = 3000;
  group_.name = "all";
  group_.maxGas = 2.0;
  group_.maxOil = 3000;
  SolveNetwork(wells_, {pair, group_});
  EXPECT_LE(wells_[1].Point().rates.water + wells_[2].Point().rates.water, 3000.01);
  EXPECT_LE(Sum().gas, 2.0 + 1e-6);
  EXPECT_LE(Sum().oil, 3000.01);
  EXPECT_GT(Sum().oil, 2900);
}

TEST_F(Group, LeavesWellsAloneWithinItsLimits) {
  group_.maxLiquid = 20000;
  EXPECT_TRUE(SolveNetwork(wells_, {group_}).empty());
  EXPECT_NEAR(Sum().Liquid(), 15000, 1e-6);
}

TEST_F(Group, ShutsAWellThatLoadsUpWhenHeldBack) {
  const TubingSpec tubing = Tubing(9000, 3);
  std::vector<NetworkWell> wells;
  wells.emplace_back(specs_[0], GassyWhenDrawnDown());
  wells[0].tubing = &tubing;
  wells[0].manifoldPressure = 150;
  group_.name = "G";
  group_.maxLiquid = 100;
  SolveNetwork(wells, {group_});
  EXPECT_EQ(wells[0].Point().limitedBy, "can't lift when held back");
}

}  // namespace
}  // namespace gantry::fieldrun
