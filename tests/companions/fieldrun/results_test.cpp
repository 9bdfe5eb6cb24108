// What is written of a run: tables, totals, warnings and the report, from a run made by hand.

#include <cmath>
#include <fstream>

#include <gtest/gtest.h>

#include "fieldrun/results/report_html.h"
#include "fieldrun/results/result_folder.h"
#include "fieldrun/results/result_reader.h"
#include "fieldrun/results/result_tables.h"
#include "fieldrun/run/run_checks.h"
#include "fieldrun/run/well_totals.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr double kNaN = kUnknownRates.oil;
constexpr const char* kProducer = "P,\"1\"";

// A producer with a quarter of each step down and a water injector, over two steps. Of the second
// the simulator tells nothing any more.
class Results : public ::testing::Test {
 protected:
  Results() {
    case_.general.title = "Field <A> & \"B\"";
    case_.tubings.emplace_back().name = "pipe";
    case_.tubings[0].depth = 8000;
    case_.tubings[0].length = 9000;
    case_.tubings[0].diameter = 3;
    case_.wells.resize(2);
    case_.wells[0].name = kProducer;
    case_.wells[0].downtime = 0.25;
    case_.wells[0].tubing = "pipe";
    case_.wells[1].name = "I1";
    case_.wells[1].kind = static_cast<int>(WellKind::kWaterInjector);
    start_.id = "00c0ffee";
    start_.simulator = "tanksim <1>";
    start_.start = {2020, 1, 1};
    start_.stepCount = 3;
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
    record.wells[0].lift = {kNaN, 2500};
    record.wells[0].point = {true, 2000, {400, 100, 0.4}, "tubing"};
    record.wells[0].gravities = {0.85, 0.7, 1};
    record.wells[0].uptime = 0.75;
    record.wells[0].tubing = "pipe";
    record.wells[0].manifoldPressure = 200;
    record.wells[1].inflow = {{3000, {0, 0, 0}}, {5000, {0, 1000, 0}}};
    record.wells[1].point = {true, 4000, {0, 500, 0}, "water rate"};
    record.groups = {{"G", "liquid", 600, 500}, {"H: x; y", "gas", 0.5, 0.4}};
    record.events = {{record.date, "date", "well", kProducer, "max_oil 400 STB/d", "a, \"b\""}};
    if (!isReported) return record;
    record.wells[0].reported = InflowPoint{1990, {420, 80, 0.42}};
    record.wells[1].reported = InflowPoint{4010, {0, 500, 0}};
    record.wells[0].total = {9700, 1800, 9.7};
    record.wells[0].isTotalMeasured = true;
    record.wells[1].total = {0, 15500, 0};
    return record;
  }

  void Play(RunListener& listener) const {
    listener.Started(start_);
    listener.Warned({"rate", "I1", {2020, 1, 1}, "flows 1 of 2"});
    listener.StepDone(Step(0, true));
    listener.StepDone(Step(1, false));
  }

  std::string Folder() const { return folder_.Path().string(); }
  std::string Read(const char* name) const { return test::TestFolder::Read(folder_ / name); }

  CaseModel case_;
  RunStart start_;
  test::TestFolder folder_;
};

// For three quarters of a step, the producer's 315 of oil are 420, and its 60 of water 80.
TEST_F(Results, TablesHoldWhatIsToldWhileTheRunGoesOn) {
  ResultTables tables(Folder(), UnitSystem::kField);
  Play(tables);
  for (const std::string file : {"wells.csv", "inflow.csv", "events.csv", "field.csv"}) {
    EXPECT_EQ(Read(file.c_str()), test::TestFolder::Read(FIELDRUN_GOLDEN "/" + file));
  }
}

// The rows of a step that field.csv doesn't hold, and a row that was cut off, don't count.
TEST_F(Results, AReportIsMadeOfTheTablesAsOfTheRunItself) {
  for (const bool hasEnded : {false, true}) {
    RunFile file(Folder(), case_);
    ResultTables tables(Folder(), UnitSystem::kField);
    RunHistory history;
    for (RunListener* listener : std::initializer_list<RunListener*>{&file, &tables, &history}) {
      Play(*listener);
      if (hasEnded) listener->Ended({2, false, "it <broke>", {}});
    }
    std::ofstream(folder_ / "wells.csv", std::ios::app | std::ios::binary)
        << "3,2020-03-01,62,31,I1,water injector,1,water rate,1,9,0,9,0,9,0,9,0,9,9,9,rates,,,,,,,"
           "00c0ffee\n3,2020-03";
    RunHistory replayed;
    const StoredRun stored = ReadRunFile(Folder());
    ReplayRun(Folder(), stored, replayed);
    const std::string page = ComposeReport(case_, history);
    EXPECT_EQ(ComposeReport(stored.model, replayed), page);
    for (const char* text : {hasEnded ? "\"failed\",\"failure\":\"it \\u003cbroke>\""
                                      : "\"steps\":2,\"state\":\"cut\"",
                             "<title>Field &lt;A> &amp; \"B\"</title>", "tanksim \\u003c1>",
                             "\"00c0ffee\"", "\"text\":\"flows 1 of 2\""}) {
      EXPECT_NE(page.find(text), std::string::npos) << text;
    }
  }
  folder_.Write("field.csv", "step,run\n1,another\n");
  RunHistory replayed;
  EXPECT_THROW(ReplayRun(Folder(), ReadRunFile(Folder()), replayed), CaseError);
}

TEST_F(Results, AFolderHoldsTheFilesOfOneRun) {
  folder_.Write("field.csv", "old");
  EXPECT_THROW(ResultFolder{Folder()}, std::runtime_error) << "nobody knows whose it is";
  folder_.Write("run.json", "old");
  ResultFolder folder(Folder());
  EXPECT_THROW(ResultFolder{Folder()}, std::runtime_error) << "a run is at it";
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
  std::vector<RunWarning> warnings;
  std::vector<double> counts{1, 2, 30, 4};  // the producer's oil, water, gas; the injector's water
  const std::vector<PublishedVariable> published{{0, false, "", kProducer, "", 30816},
                                                 {1, false, "", kProducer, "", 30818},
                                                 {2, false, "", kProducer, "", 30811},
                                                 {3, false, "", "I1", "", 30819}};
  const ReadVariable read = [&](int handle) {
    const double count = counts[static_cast<size_t>(handle)];
    if (count < 0) throw DriverFailure("none");
    return count;
  };
  const auto warn = [&](const RunWarning& warning) { warnings.push_back(warning); };
  WellTotals totals(start_.wells, published, read, warn);
  totals.Begin(start_.start);
  counts = {1.01, 2, 40, 4.0155};
  StepRecord record = Step(0, true);
  totals.Count(record);
  EXPECT_NEAR(record.wells[0].total.oil, 10000, 1e-6);
  EXPECT_EQ(record.wells[0].total.gas, 10);
  EXPECT_NEAR(record.wells[1].total.water, 15500, 1e-6);
  EXPECT_TRUE(record.wells[1].isTotalMeasured);
  EXPECT_TRUE(warnings.empty());

  counts = {1.05, 2.001, 80, 4.08};
  record = Step(0, true);
  totals.Count(record);
  ASSERT_EQ(warnings.size(), 1U) << "four times of what flows in a step";
  EXPECT_EQ(warnings[0].topic, "time");
  warnings.clear();

  counts = {1.05, 2.001, kNaN, -1};
  for (const bool isReported : {false, true, true}) {
    record = Step(0, isReported);
    totals.Count(record);
    EXPECT_EQ(std::isnan(record.wells[0].total.oil), !isReported) << "no rate that was decided";
  }
  // From where the simulator's count was left: twice three quarters of 31 days.
  EXPECT_EQ(record.wells[0].total.oil, 50000 + 2 * 0.75 * 31 * 420);
  EXPECT_EQ(record.wells[1].total.water, 80000 + 2 * 31 * 500);
  EXPECT_FALSE(record.wells[1].isTotalMeasured);
  EXPECT_EQ(warnings.size(), 2U);

  warnings.clear();
  WellTotals(start_.wells, {}, read, warn).Begin(start_.start);
  ASSERT_EQ(warnings.size(), 1U) << "one word for all";
  EXPECT_EQ(warnings[0].well, "");
}

TEST_F(Results, NonsenseIsNamedOnceForEachTopicAndWell) {
  RunWarnings warnings;
  const RunChecks checks(UnitSystem::kField, [&](const RunWarning& w) { warnings.Add(w); });
  const RunWell& well = start_.wells[0];
  const OperatingPoint plan{true, 2000, {400, 100, 0.4}, ""};
  const auto report = [&](const InflowPoint& point) {
    return checks.Report(well, start_.start, plan, point);
  };
  const std::vector<InflowPoint> measured{{3000, {0, 0, 0}}, {-9999.9999, {0, 0, 0}}};
  checks.Inflow(well, start_.start, measured);
  checks.TubingGravities(well, start_.start, {0.85, 0.7, 1}, {0.85, 0.7, 1});
  EXPECT_TRUE(report({1600, {350, 90, 0.36}}));
  EXPECT_TRUE(warnings.All().empty()) << warnings.All()[0].text;

  checks.Inflow(well, start_.start, {{3000, {0, 0, 0}}, {kNaN, {1, 1, 1}}, {1e30, {1, 1, 1}}});
  EXPECT_FALSE(report({kNaN, {350, 90, 0.36}}));
  for (int i = 0; i < 2; ++i) report({1000, {200, 90, -0.1}});
  checks.TubingGravities(well, start_.start, {0.85, 50, 1}, {0.85, 0.7, 1});
  std::string all;
  for (const RunWarning& warning : warnings.All())
    all += warning.topic + ": " + ToText(warning) + "\n";
  EXPECT_EQ(
      all.substr(0, all.find("the simulator's gas")),
      "inflow: P,\"1\", 2020-01-01: 2 of the 3 points of its inflow hold numbers that no well has\n"
      "report: P,\"1\", 2020-01-01: the simulator reports no numbers of it; such a step isn't "
      "counted\n"
      "backflow: P,\"1\", 2020-01-01: the simulator reports a flow the other way\n"
      "rate: P,\"1\", 2020-01-01: flows 290 STB/d of liquid, where the network has planned 500 "
      "STB/d\n"
      "pressure: P,\"1\", 2020-01-01: doesn't hold its planned pressure, 2000 psig: the simulator "
      "reports 1000 psig\n"
      "gas gravity: P,\"1\", 2020-01-01: ");
}

}  // namespace
}  // namespace gantry::fieldrun
