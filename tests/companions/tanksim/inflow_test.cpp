#include "tanksim/inflow.h"

#include <gtest/gtest.h>

namespace gantry::simulator {
namespace {

TEST(Inflow, FollowsVogelsCurveBelowTheBubblePoint) {
  const double reservoir = 3000.0;
  const Inflow inflow(reservoir, reservoir, Inflow::kVogelCurvature);
  const double most = inflow.HydrocarbonDrawdown(0.0);
  for (const double x : {0.1, 0.25, 0.5, 0.75, 0.9}) {
    EXPECT_NEAR(inflow.HydrocarbonDrawdown(x * reservoir) / most, 1.0 - 0.2 * x - 0.8 * x * x,
                1e-12);
  }
}

TEST(Inflow, IsStraightAboveTheBubblePointAndSmoothAtIt) {
  const Inflow inflow(4000.0, 2500.0, Inflow::kVogelCurvature);
  EXPECT_DOUBLE_EQ(inflow.HydrocarbonDrawdown(3000.0), 1000.0);
  const double above = inflow.HydrocarbonDrawdown(2500.0) - inflow.HydrocarbonDrawdown(2501.0);
  const double below = inflow.HydrocarbonDrawdown(2499.0) - inflow.HydrocarbonDrawdown(2500.0);
  EXPECT_NEAR(above, below, 1e-3);
}

TEST(Inflow, OfDryGasFallsWithTheSquareOfPressure) {
  const Inflow inflow(2000.0, 2000.0, Inflow::kDryGasCurvature);
  EXPECT_NEAR(inflow.HydrocarbonDrawdown(1000.0) / inflow.HydrocarbonDrawdown(0.0), 0.75, 1e-12);
}

TEST(Inflow, FindsThePressureOfARateOfOilAndWaterTogether) {
  const Inflow inflow(4000.0, 2500.0, Inflow::kVogelCurvature);
  for (double pressure = 50.0; pressure < 4000.0; pressure += 79.0) {
    const double rate =
        3.0 * inflow.HydrocarbonDrawdown(pressure) + 0.7 * inflow.WaterDrawdown(pressure);
    EXPECT_NEAR(inflow.PressureFor(rate, 3.0, 0.7), pressure, 1e-8);
  }
  EXPECT_EQ(inflow.PressureFor(1e9, 3.0, 0.0), 0.0) << "beyond the well";
  EXPECT_EQ(inflow.PressureFor(0.0, 3.0, 0.0), 4000.0);
}

}  // namespace
}  // namespace gantry::simulator
