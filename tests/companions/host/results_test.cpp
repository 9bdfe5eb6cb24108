// What is written of a run: tables, totals and the report, from a run made by hand.

#include <regex>

#include <gtest/gtest.h>

#include "host/output_file.h"
#include "host/report_html.h"
#include "host/result_tables.h"
#include "host/svg_chart.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

// A producer with a quarter of each step down and a water injector, over two steps.
class Results : public ::testing::Test {
 protected:
  Results() {
    case_.general.title = "Field <A> & \"B\"";
    case_.wells.resize(2);
    case_.wells[0].name = "P,1";
    case_.wells[0].downtime = 0.25;
    case_.wells[1].name = "I1";
    case_.wells[1].kind = static_cast<int>(WellKind::kWaterInjector);
    start_.driver = "driver";
    start_.start = {2020, 1, 1};
    start_.wells = {{&case_.wells[0], 0}, {&case_.wells[1], 1}};
  }

  StepRecord Step(size_t number, bool isReported) const {
    StepRecord record;
    record.step = number;
    record.date = AddMonths(start_.start, static_cast<int>(number));
    record.days = 31.0 * static_cast<double>(number);
    record.length = 31;
    record.wells.resize(2);
    record.wells[0].inflow = {{3000, {0, 0, 0}}, {1000, {800, 200, 0.8}}};
    record.wells[0].point = {true, 2000, {400, 100, 0.4}, "tubing"};
    record.wells[1].inflow = {{3000, {0, 0, 0}}, {5000, {0, 1000, 0}}};
    record.wells[1].point = {true, 4000, {0, 500, 0}, "water rate"};
    if (isReported) {
      record.wells[0].reported = InflowPoint{1990, {420, 80, 0.42}};
      record.wells[1].reported = InflowPoint{4010, {0, 500, 0}};
    }
    record.groups = {{"G", "liquid", 600, 500}};
    return record;
  }

  void Play(RunListener& listener) const {
    listener.Started(start_);
    listener.StepDone(Step(0, true));
    listener.StepDone(Step(1, false));
    listener.Ended({2, true, ""});
  }

  CaseModel case_;
  RunStart start_;
  test::TestFolder folder_;
};

TEST_F(Results, TablesHoldOneRowForEachWellAndStep) {
  ResultTables tables(folder_.Path().string(), UnitSystem::kField);
  Play(tables);
  const std::string wells = test::TestFolder::Read(folder_ / "wells.csv");
  EXPECT_NE(wells.find("\n1,2020-01-01,0,31,\"P,1\",producer,1,tubing,0.75,2000,400,100,0.4,"
                       "1990,420,80,0.42\n"),
            std::string::npos)
      << wells;
  EXPECT_NE(wells.find("\n2,2020-02-01,31,31,I1,water injector,1,water rate,1,4000,0,500,0,,,,\n"),
            std::string::npos)
      << wells;
  const std::string inflow = test::TestFolder::Read(folder_ / "inflow.csv");
  EXPECT_EQ(std::count(inflow.begin(), inflow.end(), '\n'), 9);
}

TEST_F(Results, TotalsTakeWhatTheSimulatorReportsWhileTheWellIsUp) {
  ResultTables tables(folder_.Path().string(), UnitSystem::kField);
  Play(tables);
  const std::string field = test::TestFolder::Read(folder_ / "field.csv");
  // Oil: 0.75 * 31 * (420 reported, then 400 decided) = 19065; water 80 and 100: 4185.
  EXPECT_NE(field.find(",19065,4185,19.065,31000,0,1,1,G: liquid\n"), std::string::npos) << field;
}

TEST_F(Results, TakeTheirNamesOnlyWhenTheRunHasEnded) {
  folder_.Write("wells.csv", "old");
  {
    ResultTables tables(folder_.Path().string(), UnitSystem::kField);
    tables.Started(start_);
    tables.StepDone(Step(0, true));
    EXPECT_EQ(test::TestFolder::Read(folder_ / "wells.csv"), "old");
  }
  EXPECT_EQ(test::TestFolder::Read(folder_ / "wells.csv"), "old");
  EXPECT_FALSE(fs::exists(folder_ / "field.csv"));
}

TEST_F(Results, ReportNeedsNothingBesideItselfAndEscapesItsTexts) {
  RunHistory history;
  Play(history);
  const std::string page = ComposeReport(case_, history);
  EXPECT_EQ(page.find("http"), std::string::npos);
  EXPECT_EQ(page.find("<script"), std::string::npos);
  EXPECT_NE(page.find("<h1>Field &lt;A&gt; &amp; &quot;B&quot;</h1>"), std::string::npos);
  EXPECT_EQ(page.find("nan"), std::string::npos);
  EXPECT_EQ(page.find("inf\""), std::string::npos);
  EXPECT_NE(page.find("The simulator came to its own end"), std::string::npos);
  for (const char* tag : {"div", "figure", "svg", "table", "ul", "main"}) {
    const auto count = [&](const std::string& pattern) {
      const std::regex regex(pattern);
      return std::distance(std::sregex_iterator(page.begin(), page.end(), regex), {});
    };
    EXPECT_EQ(count(std::string("<") + tag + "[ >]"), count(std::string("</") + tag + ">")) << tag;
  }
}

TEST_F(Results, ReportCountsItsTotalsFromNothing) {
  RunHistory history;
  Play(history);
  const std::string page = ComposeReport(case_, history);
  // The curve of what was injected, the highest, begins on the axis of its chart.
  const std::string chart = page.substr(page.find("<figcaption>Liquid totals"));
  std::smatch axis;
  std::smatch curve;
  ASSERT_TRUE(std::regex_search(chart, axis, std::regex("class=\"axis\".* y1=\"([0-9]+)\"")));
  ASSERT_TRUE(
      std::regex_search(chart, curve, std::regex("class=\"line inj\" d=\"M[0-9.]+ ([0-9]+)")));
  EXPECT_EQ(curve[1], axis[1]);
}

TEST(Chart, KeepsTheLabelsOfItsAxesInside) {
  Chart chart;
  chart.dateOfX0 = Date{2020, 1, 1};
  chart.series = {{"none", "water", {{0, 0}, {91, 0}}, false}};
  const std::string html = ToHtml(chart);
  std::smatch last;
  ASSERT_TRUE(std::regex_search(html, last, std::regex("x=\"([0-9.]+)\" y=\"[0-9.]+\">2020-04<")));
  EXPECT_LE(std::stod(last[1]) + 26, 400) << "half of the label's width lies beyond its tick";
  EXPECT_NE(html.find(">1</text>"), std::string::npos);
  EXPECT_EQ(html.find(">1.2</text>"), std::string::npos) << "of a part of 1";
}

TEST_F(Results, ReportOfARunThatFailedAtOnceSaysSo) {
  RunHistory history;
  history.Started(start_);
  history.Ended({0, false, "Connection to simulator failed"});
  const std::string page = ComposeReport(case_, history);
  EXPECT_NE(page.find("The run failed in step 1: Connection to simulator failed"),
            std::string::npos);
}

TEST(CsvField, QuotesWhatWouldBreakTheTable) {
  EXPECT_EQ(CsvField("plain"), "plain");
  EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
  EXPECT_EQ(CsvField("say \"x\""), "\"say \"\"x\"\"\"");
}

}  // namespace
}  // namespace gantry::fieldrun
