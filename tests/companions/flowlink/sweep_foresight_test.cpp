#include "flowlink/sweep_foresight.h"

#include <cmath>

#include <gtest/gtest.h>

#include "flowlink/flow_items.h"

namespace gantry::flowlink {
namespace {

/// A producer of oil and gas, and a water injector, as flow gives their vectors.
WellValues Answer() {
  WellValues values(2, std::vector<double>(SummaryVectors().size(), 0.0));
  values[0][0] = 700.1;    // oil
  values[0][1] = 12345.6;  // gas
  values[0][2] = 33.3;     // water
  values[1][4] = 900.9;    // injected water
  return values;
}

std::vector<HostControls> Rung(int rung, double skewness) {
  const double share = std::pow(static_cast<double>(10 - rung) / 10, skewness);
  return {{{{"LIQUID_PRODUCTION_RATE", share * (33.3 + 700.1), "USER"},
            {"GAS_PRODUCTION_RATE", share * 12345.6, "USER"}},
           "OPEN",
           {}},
          {{{"WATER_INJECTION_RATE", share * 900.9, "USER"}}, "OPEN", {}}};
}

TEST(SweepForesight, GivesTheLimitsThatTheDriverComesTo) {
  for (const double skewness : {2.5, 1.0, 0.4}) {
    const Sweep sweep = ForeseeSweep(Rung(1, skewness), Answer());
    ASSERT_EQ(sweep.controls.size(), 9U);
    for (size_t i = 0; i < sweep.controls.size(); ++i) {
      const auto& rungs = sweep.controls;
      const auto expected = Rung(static_cast<int>(i) + 1, skewness);
      for (size_t well = 0; well < expected.size(); ++well) {
        EXPECT_EQ(rungs[i][well].status, "OPEN");
        for (size_t limit = 0; limit < expected[well].constraints.size(); ++limit) {
          EXPECT_EQ(rungs[i][well].constraints[limit].value,
                    expected[well].constraints[limit].value);
        }
      }
    }
  }
}

TEST(SweepForesight, TakesNothingElseForASweep) {
  auto onlyOneWell = Rung(1, 2.5);
  onlyOneWell[1].constraints[0].value *= 1.001;
  EXPECT_TRUE(ForeseeSweep(onlyOneWell, Answer()).controls.empty());
  auto pressure = Rung(1, 2.5);
  pressure[1].constraints = {{"BOTTOM_HOLE_PRESSURE", 300, "USER"}};
  EXPECT_TRUE(ForeseeSweep(pressure, Answer()).controls.empty());
  EXPECT_TRUE(ForeseeSweep(Rung(0, 2.5), Answer()).controls.empty());
  EXPECT_TRUE(ForeseeSweep(std::vector<HostControls>(2), Answer()).controls.empty());
}

}  // namespace
}  // namespace gantry::flowlink
