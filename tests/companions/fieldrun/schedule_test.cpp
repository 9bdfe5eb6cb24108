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

TEST(Schedule, FollowsTheCalendarToTheEndOfTheRunAndToTheDaysOfEvents) {
  const Date newYear{2015, 1, 1};
  const auto event = [](const std::string& date) {
    return "\n[[event]]\ndate = " + date + "\naction = 'open'";
  };
  const std::string inside = "\n[[event]]\nwhen = 'field total_oil > 1'\naction = 'open'" +
                             event("2015-02-01") + event("2015-02-11") + event("2015-01-01");
  const struct {
    Date start;
    std::string time;
    Lengths lengths;
  } kCases[] = {{{2015, 12, 31}, "steps = 4", {31, 29, 31, 30}},  // 2016 is a leap year
                {newYear, "duration = 75.5\nstep = 30", {30, 30, 15.5}},
                {newYear, "duration = 1\nstep = 0.1", Lengths(10, 0.1)},  // which is no binary
                {newYear, "end = 2015-03-06\nstep = 30", {30, 30, 4}},
                {newYear, "steps = 2" + inside + event("2015-01-11"), {10, 21, 10, 18}}};
  for (const auto& [start, time, lengths] : kCases) {
    const Schedule schedule = Plan(time, start);
    ASSERT_EQ(schedule.lengths.size(), lengths.size()) << time;
    for (size_t i = 0; i < lengths.size(); ++i) EXPECT_NEAR(schedule.lengths[i], lengths[i], 1e-9);
  }
  EXPECT_EQ(ToText(Plan("steps = 4", {2015, 12, 31}).DateBefore(2)), "2016-02-29");
  EXPECT_EQ(toml_reader::DayNumber(newYear), 42004) << "as the module counts";
  for (const std::string& time :
       {std::string("end = 2015-01-01"), std::string("end = 9999-01-01\nstep = 0.001"),
        "steps = 2" + event("2014-12-31"), "steps = 2" + event("2015-03-01")}) {
    EXPECT_THROW(Plan(time, newYear), CaseError) << time;
  }
}

}  // namespace
}  // namespace gantry::fieldrun
