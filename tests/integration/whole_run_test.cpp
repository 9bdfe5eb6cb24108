// A whole run of the module with the older of the simulator's versions, each step in the host's own
// order. fieldrun's examples go through the newer one.

#include <cmath>

#include <gtest/gtest.h>

#include "integration/real_run.h"

namespace gantry::test {
namespace {

using fieldrun::DriverInflow;
using fieldrun::DriverModel;
using fieldrun::InflowPoint;

constexpr double kStepDays = 30.0;
constexpr double kEndDays = 100.0;
constexpr size_t kOperatingPoint = 4;

/// Two wells that produce gas, and one that injects it.
class OlderVersion : public ::testing::Test {
 protected:
  /// Sets every well to a point of its inflow; the points, by well.
  std::vector<InflowPoint> PlanStep() {
    std::vector<InflowPoint> points;
    for (int well = 0; well < 3; ++well) {
      const DriverInflow inflow = model_->Inflow(well);
      points.push_back(inflow.points.at(kOperatingPoint));
      model_->SetControl({.well = well, .point = points.back(), .composition = {1, 0, 0, 0, 0, 0}},
                         inflow, 6);
    }
    return points;
  }

  RealRun run_{"2016.2"};
  std::unique_ptr<DriverModel> model_ =
      run_.Model(run_.Deck("gas_cycling/GAS_CYCLING.afi", kEndDays));
};

TEST_F(OlderVersion, KeepsTheRatesOfTheHostUntilTheSimulationEnds) {
  ASSERT_EQ(StartRunOfAllWells(*model_).size(), 3u);
  int steps = 0;
  std::vector<InflowPoint> planned;
  do {
    ASSERT_LT(steps++, 10) << "the simulation doesn't end";
    model_->ReadWells();
    for (size_t well = 0; well < planned.size(); ++well) {
      EXPECT_NEAR(model_->Inflow(static_cast<int>(well)).current.rates.gas, planned[well].rates.gas,
                  1e-3 * planned[well].rates.gas);
    }
    planned = PlanStep();
  } while (model_->Step(kStepDays));
  EXPECT_EQ(steps, static_cast<int>(std::ceil(kEndDays / kStepDays)));
  EXPECT_DOUBLE_EQ(std::stod(model_->Get("Intersect.CurrentElapsedDays")), kStepDays * (steps - 1));
}

}  // namespace
}  // namespace gantry::test
