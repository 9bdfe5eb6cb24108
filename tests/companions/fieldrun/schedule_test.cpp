#include "fieldrun/run/schedule.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include "fieldrun/case/case_reader.h"
#include "support/cases.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

test::Columns Plan(const test::Columns& given) {
  const test::TestFolder folder;
  folder.Write("A.afi", "");
  const auto file = folder.Write(
      "case.toml", "simulator.deck = 'A.afi'\ntime = {" + given[1] + "}\n" + given[2] + "\n");
  try {
    const Schedule schedule = PlanSteps(ReadCase(file.string()), DateOf(given[0]));
    return {fmt::format("{:.10g}", fmt::join(schedule.lengths, " ")),
            ToText(schedule.DateBefore(schedule.lengths.size() - 1))};
  } catch (const CaseError& error) {
    return {error.Findings[0].In("")};
  }
}

TEST(Schedule, FollowsTheCalendarToTheEndOfTheRunAndToTheDaysOfEvents) {
  test::ExpectCases(FIELDRUN_SCHEDULE_CASES, {{"plan", Plan}});
  EXPECT_EQ(toml_reader::DayNumber({2015, 1, 1}), 42004) << "as the module counts";
}

}  // namespace
}  // namespace gantry::fieldrun
