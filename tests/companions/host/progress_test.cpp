#include "host/progress.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

TEST(ProgressBar, TellsStepDateAndTheTimeThatIsLeft) {
  EXPECT_EQ(ProgressBar(0, 4, {2020, 1, 31}, 0, 75),
            "[........................] step 1 of 4  2020-01-31  1:15");
  EXPECT_EQ(ProgressBar(3, 4, {2020, 4, 1}, 5400, 60),
            "[##################......] step 4 of 4  2020-04-01  1:31:00, 29:00 left");
  EXPECT_TRUE(ProgressBar(1, 2, {2020, 4, 1}, 10, 60).ends_with(", 0:00 left")) << "a slow step";
}

}  // namespace
}  // namespace gantry::fieldrun
