#include "tanksim/equation_of_state.h"

#include <gtest/gtest.h>

#include "tanksim/constants.h"

namespace gantry::simulator {
namespace {

EosData MethanePropaneDecane(const char* name = "PENG_ROBINSON") {
  return {name,
          {{"C1", 16.043, -116.6, 667.8, 1.59, 0.0115, -258.7, 0.0, 77.0},
           {"C3", 44.097, 206.0, 616.3, 3.25, 0.1529, -43.7, 0.0, 150.3},
           {"C10", 142.28, 652.1, 305.7, 9.66, 0.4885, 345.4, 0.0, 433.0}},
          {0.0, 0.04, 0.0}};
}

double Deviation(const PhaseResult& phase, double pressure, double temperature) {
  return pressure * phase.molarVolume / (kGasConstant * (temperature + kFahrenheitToRankine));
}

class Equation : public testing::TestWithParam<const char*> {
 protected:
  const EquationOfState eos{MethanePropaneDecane(GetParam())};
};

TEST_P(Equation, GivesPropaneItsVapourPressureAtHundredDegrees) {
  // 188.7 psia (Gas Processors Suppliers Association, Engineering Data Book, section 23).
  const std::vector<double> propane = {0.0, 1.0, 0.0};
  EXPECT_GT(eos.Flash(propane, 183.0, 100.0).vapour.moleShare, 0.999);
  EXPECT_GT(eos.Flash(propane, 194.0, 100.0).liquid.moleShare, 0.999);
}

TEST_P(Equation, GivesMethaneNearlyIdealAtLowPressureAndDenserAbove) {
  const std::vector<double> methane = {1.0, 0.0, 0.0};
  EXPECT_NEAR(Deviation(eos.Flash(methane, 14.7, 60.0).vapour, 14.7, 60.0), 1.0, 0.003);
  // 0.90 by the chart of Standing and Katz at 1000 psia and 100 F.
  EXPECT_NEAR(Deviation(eos.Flash(methane, 1000.0, 100.0).vapour, 1000.0, 100.0), 0.90, 0.025);
}

TEST_P(Equation, SplitsAMixtureWithoutLosingAnything) {
  const std::vector<double> mixture = {0.5, 0.2, 0.3};
  const FlashResult flash = eos.Flash(mixture, 800.0, 150.0);
  ASSERT_GT(flash.liquid.moleShare, 0.0);
  ASSERT_GT(flash.vapour.moleShare, 0.0);
  for (size_t i = 0; i < mixture.size(); ++i) {
    EXPECT_NEAR(flash.liquid.moleShare * flash.liquid.fractions[i] +
                    flash.vapour.moleShare * flash.vapour.fractions[i],
                mixture[i], 1e-9);
  }
  const auto ratio = [&](size_t i) {
    return flash.vapour.fractions[i] / flash.liquid.fractions[i];
  };
  EXPECT_GT(ratio(0), 1.0);
  EXPECT_LT(ratio(1), ratio(0));
  EXPECT_LT(ratio(2), 0.05);
  EXPECT_GT(flash.vapour.molarVolume, 2.0 * flash.liquid.molarVolume);
  const FlashResult gas = eos.Flash(flash.vapour.fractions, 800.0 * 0.98, 150.0);
  EXPECT_NEAR(gas.vapour.moleShare, 1.0, 0.01) << "a phase on its own is one phase";
  const FlashResult oil = eos.Flash(flash.liquid.fractions, 800.0 * 1.02, 150.0);
  EXPECT_NEAR(oil.liquid.moleShare, 1.0, 0.01);
}

INSTANTIATE_TEST_SUITE_P(Both, Equation, testing::Values("PENG_ROBINSON", "SOAVE_REDLICH_KWONG"),
                         [](const auto& test) { return std::string(test.param); });

TEST(Viscosity, IsOfTheRightSizeForGasAndOil) {
  const EquationOfState eos(MethanePropaneDecane());
  // Methane at 1000 psia and 100 F: 0.0133 cp (Lee, Gonzalez and Eakin 1966).
  EXPECT_NEAR(eos.Viscosity(eos.Flash({1.0, 0.0, 0.0}, 1000.0, 100.0).vapour, 100.0), 0.0133,
              0.002);
  // Decane at 45.1 lb/ft3, worked by hand: a reduced density of 3.062 gives 0.0193 over 0.0323, and
  // 0.005 of the dilute gas. (It has 0.76 cp: the method is known to fall short of that.)
  const PhaseResult decane = {1.0, {0.0, 0.0, 1.0}, 142.28 / 45.1, 142.28};
  EXPECT_NEAR(eos.Viscosity(decane, 100.0), 0.603, 0.006);
}

}  // namespace
}  // namespace gantry::simulator
