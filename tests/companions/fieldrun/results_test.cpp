// What is written of a run: tables, totals, warnings and the report, of the run in the folder
// "golden". There a producer is down for a quarter of each step, so that its 420 of oil are 315 and
// its 80 of water 60, beside a water injector, over two steps. Of the second the simulator tells
// nothing any more.

#include <fstream>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "fieldrun/results/packed_numbers.h"
#include "fieldrun/results/report_html.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/results/result_reader.h"
#include "fieldrun/results/result_tables.h"
#include "fieldrun/run/run_checks.h"
#include "fieldrun/run/well_totals.h"
#include "support/raised.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr double kNaN = kUnknownRates.oil;

class Results : public ::testing::Test {
 protected:
  Results() { ReplayRun(FIELDRUN_GOLDEN, run_, history_); }

  std::string Folder() const { return folder_.Path().string(); }
  std::string Read(const char* name) const { return test::TestFolder::Read(folder_ / name); }
  std::string Report() const {
    const StoredRun run = ReadRunFile(Folder());
    RunHistory history;
    ReplayRun(Folder(), run, history);
    return ComposeReport(run.model, history);
  }

  const StoredRun run_ = ReadRunFile(FIELDRUN_GOLDEN);
  RunHistory history_;
  test::TestFolder folder_;
};

TEST(PackedNumbers, AreWhatAPageUnpacks) {
  const std::vector<double> numbers = {1.5, 3, -2, kNaN, 2};
  EXPECT_EQ(Packed(numbers, 2).dump(), R"({"e":-1,"v":"eelD.wC"})");
  EXPECT_EQ(Packed(numbers, 2, std::vector<size_t>{2, 3}).dump(), R"({"e":-1,"v":"e8BnC.oB"})");
}

// The rows of a step that field.csv doesn't hold, and a row that was cut off, don't count.
TEST_F(Results, AreWrittenAsTheyWereReadAndMakeAReport) {
  RunFile file(Folder(), run_.model);
  ReplayRun(FIELDRUN_GOLDEN, run_, file);
  {
    ResultTables tables(Folder(), UnitSystem::kField);
    ReplayRun(FIELDRUN_GOLDEN, run_, tables);
  }
  for (const std::string name :
       {"run.json", "wells.csv", "inflow.csv", "events.csv", "field.csv"}) {
    EXPECT_EQ(Read(name.c_str()), test::TestFolder::Read(FIELDRUN_GOLDEN "/" + name));
  }
  const std::string page = Report();
  std::ofstream(folder_ / "wells.csv", std::ios::app | std::ios::binary)
      << "3,2020-03-01,62,31,I1,water injector,1,water rate,1,9,0,9,0,9,0,9,0,9,9,9,rates,,,,,,,"
         "00c0ffee\n3,2020-03";
  EXPECT_EQ(Report(), page);
  EXPECT_EQ(ComposeReport(run_.model, history_), page);
  file.Ended({2, false, "it <broke>", {}});
  for (const auto& [text, place] : {std::pair(page, "\"steps\":2,\"state\":\"cut\""),
                                    {page, "<title>Field &lt;A> &amp; \"B\"</title>"},
                                    {page, "tanksim \\u003c1>"},
                                    {page, "\"00c0ffee\""},
                                    {page, "\"text\":\"flows 1 of 2\""},
                                    {page, "\"daysOpen\":23.25"},
                                    {Report(), "\"failed\",\"failure\":\"it \\u003cbroke>\""}}) {
    EXPECT_NE(text.find(place), std::string::npos) << place;
  }
  folder_.Write("field.csv", "step,run\n1,another\n");
  EXPECT_THROW(Report(), CaseError);
}

TEST_F(Results, AFolderHoldsTheFilesOfOneRun) {
  const auto open = [&] { return test::Raised([&] { ResultFolder{Folder()}; }); };
  folder_.Write("field.csv", "old");
  EXPECT_TRUE(open().starts_with("runtime_error")) << "nobody knows whose it is";
  folder_.Write("run.json", "old");
  ResultFolder folder(Folder());
  EXPECT_TRUE(open().starts_with("runtime_error")) << "a run is at it";
  EXPECT_TRUE(ResultFolder::IsBeingWritten(Folder()));
  EXPECT_THROW(folder.ReplaceBy([&] {
    folder_.Write("field.csv", "new");
    throw std::runtime_error("full");
  }),
               std::runtime_error);
  EXPECT_EQ(Read("field.csv") + Read("run.json"), "oldold");
  folder.ReplaceBy([&] { folder_.Write("run.json", "new"); });
  EXPECT_EQ(Read("run.json"), "new");
  EXPECT_FALSE(fs::exists(folder_ / "field.csv") || fs::exists(folder_ / "field.csv.previous"));
}

TEST_F(Results, TotalsAreTheSimulatorsAsFarAsTheyAreSound) {
  const std::string& producer = run_.start.wells[0].spec->name;
  const std::vector<PublishedVariable> published{{0, false, "", producer, "", 30816},
                                                 {1, false, "", producer, "", 30818},
                                                 {2, false, "", producer, "", 30811},
                                                 {3, false, "", "I1", "", 30819}};
  std::vector<double> counts{1, 2, 30, 4};  // the producer's oil, water, gas; the injector's water
  std::vector<RunWarning> warnings;
  const ReadVariable read = [&](int handle) {
    const double count = counts[static_cast<size_t>(handle)];
    if (count < 0) throw DriverFailure("none");
    return count;
  };
  const auto warn = [&](const RunWarning& warning) { warnings.push_back(warning); };
  WellTotals totals(run_.start.wells, published, read, warn);
  totals.Begin(run_.start.start);
  // Four times of what flows in the second step; then no count, and from where it was left what is
  // reported, in three quarters of 31 days, but no rate that was only decided.
  const struct {
    std::vector<double> counts;
    bool isReported;
    std::string totals;
  } kSteps[] = {{{1.01, 2, 40, 4.0155}, true, "10000 10 15500 true, warnings 0"},
                {{1.05, 2.001, 80, 4.08}, true, "50000 50 80000 true, warnings 1"},
                {{1.05, 2.001, kNaN, -1}, false, "nan nan nan true, warnings 1"},
                {{1.05, 2.001, kNaN, -1}, true, "59765 59.765 95500 false, warnings 3"},
                {{1.05, 2.001, kNaN, -1}, true, "69530 69.53 111000 false, warnings 3"}};
  for (const auto& step : kSteps) {
    counts = step.counts;
    StepRecord record = history_.curves[step.isReported ? 0 : 1];
    totals.Count(record);
    const auto& [well, injector] = std::tie(record.wells[0], record.wells[1]);
    EXPECT_EQ(fmt::format("{:.9g} {:.9g} {:.9g} {}, warnings {}", well.total.oil, well.total.gas,
                          injector.total.water, injector.isTotalMeasured, warnings.size()),
              step.totals);
  }
  EXPECT_EQ(warnings[0].topic, "time");
  counts = {1, 2, 30, 4};
  WellTotals falling(run_.start.wells, published, read, warn);
  falling.Begin(run_.start.start);
  counts = {0.9, 2, 40, 4.0155};
  StepRecord record = history_.curves[0];
  falling.Count(record);
  EXPECT_FALSE(record.wells[0].isTotalMeasured) << "a total that falls";
  const size_t before = warnings.size();
  WellTotals(run_.start.wells, {}, read, warn).Begin(run_.start.start);
  ASSERT_EQ(warnings.size(), before + 1) << "one word for all";
  EXPECT_EQ(warnings.back().well, "");
}

TEST_F(Results, NonsenseIsNamedOnceForEachTopicAndWell) {
  RunWarnings warnings;
  const RunChecks checks(UnitSystem::kField, [&](const RunWarning& w) { warnings.Add(w); });
  const RunWell& well = run_.start.wells[0];
  const Date& day = run_.start.start;
  const OperatingPoint plan{true, 2000, {400, 100, 0.4}, ""};
  const auto report = [&](const InflowPoint& point) {
    return checks.Report(well, day, plan, point);
  };
  checks.Inflow(well, day, {{3000, {0, 0, 0}}, {-9999.9999, {0, 0, 0}}});
  checks.TubingGravities(well, day, {0.85, 0.7, 1}, {0.85, 0.7, 1});
  EXPECT_TRUE(report({1600, {350, 90, 0.36}}));
  EXPECT_TRUE(warnings.All().empty()) << warnings.All()[0].text;

  checks.Inflow(well, day, {{3000, {0, 0, 0}}, {kNaN, {1, 1, 1}}, {1e30, {1, 1, 1}}});
  EXPECT_FALSE(report({kNaN, {350, 90, 0.36}}));
  for (int i = 0; i < 2; ++i) report({1000, {200, 90, -0.1}});
  checks.TubingGravities(well, day, {0.85, 50, 1}, {0.85, 0.7, 1});
  std::string all;
  for (const RunWarning& warning : warnings.All())
    all += warning.topic + ": " + ToText(warning) + "\n";
  EXPECT_EQ(
      all.substr(0, all.find("the simulator's gas")),
      R"(inflow: P,"1", 2020-01-01: 2 of the 3 points of its inflow hold numbers that no well has
report: P,"1", 2020-01-01: the simulator reports no numbers of it; such a step isn't counted
backflow: P,"1", 2020-01-01: the simulator reports a flow the other way
rate: P,"1", 2020-01-01: flows 290 STB/d of liquid, where the network has planned 500 STB/d
pressure: P,"1", 2020-01-01: doesn't hold its planned pressure, 2000 psig: the simulator reports 1000 psig
gas gravity: P,"1", 2020-01-01: )");
}

}  // namespace
}  // namespace gantry::fieldrun
