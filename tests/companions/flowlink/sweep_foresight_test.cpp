#include "flowlink/sweep_foresight.h"

#include <gtest/gtest.h>

#include "client/inflow_sweep.h"
#include "flowlink/flow_items.h"

namespace gantry::flowlink {
namespace {

/// A well that gives no water, held by that and by its oil.
HostControls Limit(double oil) {
  return {{{"WATER_PRODUCTION_RATE", 0.0, ""}, {"OIL_PRODUCTION_RATE", oil, ""}}, "", {}};
}

TEST(SweepForesight, TellsTheWholeLadderFromItsSecondRung) {
  WellValues before(3, std::vector<double>(SummaryVectors().size(), 0.0));
  before[1][0] = 1000.0;  // of oil; the first well gives nothing
  before[2][0] = 400.0;
  const double share = ShareAfter(1, 2.0);
  const Sweep sweep =
      ForeseeSweep({Limit(0.0), Limit(1000.0 * share), Limit(400.0 * share)}, before);
  ASSERT_EQ(sweep.shares.size(), 10u);
  ASSERT_EQ(sweep.controls.size(), 9u);
  EXPECT_NEAR(sweep.shares[9], 0.01, 1e-9);
  EXPECT_NEAR(sweep.controls[8][2].constraints[1].value, 4.0, 1e-6);
  EXPECT_TRUE(ForeseeSweep({{}, Limit(1000.0 * share), Limit(350.0)}, before).shares.empty());
}

}  // namespace
}  // namespace gantry::flowlink
