#include "fieldrun/verbs/progress.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

TEST(ProgressBar, TellsStepDateAndTheTimeThatIsLeft) {
  EXPECT_EQ(ProgressBar(0, 4, {2020, 1, 31}, 0, 75),
            "[........................] step 1 of 4  2020-01-31  1:15");
  EXPECT_EQ(ProgressBar(3, 6, {2020, 4, 1}, 5400, 60),
            "[############............] step 4 of 6  2020-04-01  1:31:00, 1:29:00 left");
  EXPECT_TRUE(ProgressBar(1, 2, {2020, 4, 1}, 10, 60).ends_with(", 0:00 left")) << "a slow step";
}

TEST(Progress, ShowsTheFirstWarningsAndCountsTheRest) {
  ::testing::internal::CaptureStderr();
  Progress progress(UnitSystem::kField, false, false);
  for (int well = 1; well <= 1000; ++well) {
    progress.Warned({"rate", "P" + std::to_string(well), {2020, 1, 1}, "flows less"});
  }
  progress.Ended({});
  const std::string said = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find("warning: P20, "), std::string::npos);
  EXPECT_EQ(said.find("warning: P21, "), std::string::npos);
  EXPECT_TRUE(said.ends_with("flows less\nfieldrun: 980 warnings more; run.json has them all\n"))
      << said;
}

}  // namespace
}  // namespace gantry::fieldrun
