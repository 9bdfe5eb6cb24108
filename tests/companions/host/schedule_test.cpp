#include "host/schedule.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

CaseModel CaseOf(const TimeSpec& time) {
  CaseModel model;
  model.file = "case.toml";
  model.time = time;
  return model;
}

TEST(Schedule, FollowsCalendarMonthsFromAnyDay) {
  TimeSpec time;
  time.steps = 4;
  const Schedule schedule = PlanSteps(CaseOf(time), {2015, 12, 31});
  EXPECT_EQ(schedule.lengths, (std::vector<double>{31, 29, 31, 30}));  // 2016 is a leap year
  EXPECT_EQ(ToText(schedule.DateBefore(2)), "2016-02-29");
  EXPECT_EQ(ToText(schedule.DateBefore(4)), "2016-04-30");
}

TEST(Schedule, CutsTheLastStepToTheEndOfTheRun) {
  TimeSpec time;
  time.stepDays = 30;
  time.end = Date{2015, 3, 6};
  const Schedule byDate = PlanSteps(CaseOf(time), {2015, 1, 1});
  EXPECT_EQ(byDate.lengths, (std::vector<double>{30, 30, 4}));
  time.end.reset();
  time.duration = 75.5;
  EXPECT_EQ(PlanSteps(CaseOf(time), {2015, 1, 1}).lengths, (std::vector<double>{30, 30, 15.5}));
}

TEST(Schedule, MakesNoStepOfARoundingError) {
  TimeSpec time;
  time.stepDays = 0.1;
  time.duration = 1;  // ten times 0.1 falls short of 1 by a bit
  EXPECT_EQ(PlanSteps(CaseOf(time), {2015, 1, 1}).lengths.size(), 10U);
}

TEST(Schedule, RefusesARunThatGoesNowhereOrOnForEver) {
  TimeSpec time;
  time.end = Date{2015, 1, 1};
  EXPECT_THROW(PlanSteps(CaseOf(time), {2015, 1, 1}), CaseError);
  time.end = Date{9999, 1, 1};
  time.stepDays = 0.001;
  EXPECT_THROW(PlanSteps(CaseOf(time), {2015, 1, 1}), CaseError);
}

}  // namespace
}  // namespace gantry::fieldrun
