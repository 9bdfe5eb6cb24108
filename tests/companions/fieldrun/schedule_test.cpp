#include "fieldrun/run/schedule.h"

#include <gtest/gtest.h>

#include "fieldrun/case/case_reader.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

using Lengths = std::vector<double>;

/// The steps of a case with these keys of [time], and whatever follows them.
Schedule Plan(const std::string& time, const Date& start) {
  const test::TestFolder folder;
  folder.Write("A.afi", "");
  const auto file = folder.Write("case.toml", "simulator.deck = 'A.afi'\n[time]\n" + time);
  return PlanSteps(ReadCase(file.string()), start);
}

TEST(Schedule, FollowsCalendarMonthsFromAnyDay) {
  const Schedule schedule = Plan("steps = 4", {2015, 12, 31});
  EXPECT_EQ(schedule.lengths, (Lengths{31, 29, 31, 30}));  // 2016 is a leap year
  EXPECT_EQ(ToText(schedule.DateBefore(2)), "2016-02-29");
  EXPECT_EQ(ToText(schedule.DateBefore(4)), "2016-04-30");
  EXPECT_EQ(toml_reader::DayNumber({2015, 1, 1}), 42004) << "as the module counts";
}

TEST(Schedule, EndsWhereTheRunDoesAndWhereTheDaysOfEventsBegin) {
  const Date start{2015, 1, 1};
  const auto event = [](const std::string& date) {
    return "\n[[event]]\ndate = " + date + "\naction = 'open'";
  };
  EXPECT_EQ(Plan("duration = 75.5\nstep = 30", start).lengths, (Lengths{30, 30, 15.5}));
  EXPECT_EQ(Plan("duration = 1\nstep = 0.1", start).lengths.size(), 10U) << "0.1 is no binary";
  EXPECT_EQ(Plan("end = 2015-03-06\nstep = 30", start).lengths, (Lengths{30, 30, 4}));
  const std::string inside = event("2015-02-01") + event("2015-02-11") + event("2015-01-01");
  EXPECT_EQ(Plan("steps = 2" + inside + event("2015-01-11"), start).lengths,
            (Lengths{10, 21, 10, 18}));
  for (const std::string& time :
       {std::string("end = 2015-01-01"), std::string("end = 9999-01-01\nstep = 0.001"),
        "steps = 2" + event("2014-12-31"), "steps = 2" + event("2015-03-01")}) {
    EXPECT_THROW(Plan(time, start), CaseError) << time;
  }
}

}  // namespace
}  // namespace gantry::fieldrun
