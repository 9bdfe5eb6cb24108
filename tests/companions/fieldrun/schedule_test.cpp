#include "fieldrun/run/schedule.h"

#include <gtest/gtest.h>

namespace gantry::fieldrun {
namespace {

Schedule Plan(const TimeSpec& time, const Date& start, const std::vector<Date>& events = {}) {
  CaseModel model;
  for (const Date& date : events) model.events.emplace_back().date = date;
  model.file = "case.toml";
  model.time = time;
  return PlanSteps(model, start);
}

TimeSpec Steps(double stepDays) {
  TimeSpec time;
  time.stepDays = stepDays;
  return time;
}

TEST(Schedule, FollowsCalendarMonthsFromAnyDay) {
  TimeSpec time;
  time.steps = 4;
  const Schedule schedule = Plan(time, {2015, 12, 31});
  EXPECT_EQ(schedule.lengths, (std::vector<double>{31, 29, 31, 30}));  // 2016 is a leap year
  EXPECT_EQ(ToText(schedule.DateBefore(2)), "2016-02-29");
  EXPECT_EQ(ToText(schedule.DateBefore(4)), "2016-04-30");
}

TEST(Schedule, CutsTheLastStepToTheEndOfTheRunWhereverThatLies) {
  const Date start{2015, 1, 1};
  TimeSpec time = Steps(30);
  time.duration = 75.5;
  EXPECT_EQ(Plan(time, start).lengths, (std::vector<double>{30, 30, 15.5}));
  time.stepDays = 0.1;
  time.duration = 1;  // ten times 0.1 fall short of 1 by a bit
  EXPECT_EQ(Plan(time, start).lengths.size(), 10U);
  time = Steps(30);
  time.end = Date{2015, 3, 6};
  EXPECT_EQ(Plan(time, start).lengths, (std::vector<double>{30, 30, 4}));
  time.end = start;
  EXPECT_THROW(Plan(time, start), CaseError);
  time = Steps(0.001);
  time.end = Date{9999, 1, 1};
  EXPECT_THROW(Plan(time, start), CaseError) << "it would go on for ever";
}

TEST(Schedule, EndsStepsWhereTheDaysOfEventsBegin) {
  TimeSpec time;
  time.steps = 2;
  const Date start{2015, 1, 1};
  EXPECT_EQ(Plan(time, start, {{2015, 2, 1}, {2015, 2, 11}, start, {2015, 1, 11}}).lengths,
            (std::vector<double>{10, 21, 10, 18}));
  for (const Date& outside : {Date{2014, 12, 31}, Date{2015, 3, 1}}) {
    EXPECT_THROW(Plan(time, start, {outside}), CaseError);
  }
}

}  // namespace
}  // namespace gantry::fieldrun
