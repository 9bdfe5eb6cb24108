// The examples, run to their ends with the module and the reference simulator.

#include <set>

#include <gtest/gtest.h>

#include "program.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;

class Example : public ::testing::Test {
 protected:
  void RunToTheEnd(const std::string& name) {
    const Outcome outcome =
        RunFieldrun(folder_, {"run", ExampleCase(name), "--output", (folder_ / "out").string()});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find("warning"), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.out.find("Results: "), std::string::npos);
    for (const char* file : {"wells.csv", "inflow.csv", "field.csv", "run.json", "report.html"}) {
      EXPECT_GT(fs::file_size(folder_ / "out" / file), 500U) << file;
    }
    EXPECT_NE(gantry::test::TestFolder::Read(folder_ / "out/run.json").find("(tanksim 1."),
              std::string::npos);
    const auto files = fs::directory_iterator(folder_ / "out");
    const int summary = fs::exists(folder_ / "out/FORECAST.SMSPEC") ? 2 : 0;
    EXPECT_EQ(std::distance(fs::begin(files), fs::end(files)), 7 + summary)
        << "something is left behind";
  }
  Table Read(const char* file) const { return Table(folder_ / "out" / file); }

  gantry::test::TestFolder folder_;
};

TEST(Examples, AreAllRunToTheirEndsHere) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(EXAMPLES)) {
    if (fs::exists(entry.path() / "case.toml")) names.insert(entry.path().filename().string());
  }
  names.erase("python_simulator");  // which the tests of the Python package run
  EXPECT_EQ(names, (std::set<std::string>{"five_spot", "gas_cycling", "odeh", "skerry"}));
}

TEST_F(Example, OdehHoldsThePublishedPlateauForTheFirstYears) {
  RunToTheEnd("odeh");
  const Table field = Read("field.csv");
  ASSERT_EQ(field.Rows(), 120U);
  for (size_t month = 0; month < 24; ++month) {
    EXPECT_NEAR(field.Number(month, "oil (STB/d)"), 20000, 1) << "month " << month + 1;
    EXPECT_NEAR(field.Number(month, "gas-oil ratio (scf/STB)"), 1270, 15) << "month " << month + 1;
    EXPECT_NEAR(field.Number(month, "gas injected (MMscf/d)"), 100, 1e-3);
  }
  EXPECT_NEAR(field.Number(119, "gas-oil ratio (scf/STB)"), 11259, 100) << "as in docs/odeh.md";
  EXPECT_NEAR(field.Number(119, "total oil (STB)"), 62.4e6, 0.2e6) << "as in docs/odeh.md";
}

TEST_F(Example, FiveSpotFloodsWithinTheLimitsOfItsGroups) {
  RunToTheEnd("five_spot");
  const Table field = Read("field.csv");
  ASSERT_EQ(field.Rows(), 120U);
  for (size_t month = 0; month < field.Rows(); ++month) {
    const double oil = field.Number(month, "oil (Sm3/d)");
    const double water = field.Number(month, "water (Sm3/d)");
    // The simulator holds a rate, and the mixture may drift from what the inflow promised.
    EXPECT_LE(oil + water, 1100 * 1.02) << "month " << month + 1;
    EXPECT_LE(field.Number(month, "water injected (Sm3/d)"), 1000.01) << "month " << month + 1;
  }
  EXPECT_LT(field.Number(0, "water cut"), 0.01);
  EXPECT_GT(field.Number(119, "water cut"), 0.6);
  EXPECT_GT(field.Number(119, "total oil (Sm3)"), 1e6);
}

TEST_F(Example, SkerryRunsThroughItsEventsWithinItsLimits) {
  RunToTheEnd("skerry");
  const Table field = Read("field.csv");
  ASSERT_EQ(field.Rows(), 72U);
  for (size_t month = 0; month < 72; ++month) {
    const double water = field.Number(month, "water (Sm3/d)");
    EXPECT_LE(field.Number(month, "oil (Sm3/d)"), 3300.1) << "month " << month + 1;
    EXPECT_LE(water, (month < 36 ? 2000 : 2800) * 1.05) << "month " << month + 1;
  }
  EXPECT_NEAR(field.Number(29, "oil (Sm3/d)"), 1650, 1) << "the inspection halves it";
  EXPECT_EQ(field.Number(0, "open producers"), 10);
  EXPECT_EQ(field.Number(8, "open producers"), 12);
  EXPECT_GT(field.Number(71, "water cut"), 0.6);
  const Table wells = Read("wells.csv");
  EXPECT_EQ(wells.Text(15 * 16 + 2, "tubing") + wells.Text(18 * 16 + 2, "tubing"), "89 mm62 mm");
  EXPECT_EQ(wells.Number(71 * 16 + 5, "artificial lift"), 50000);
}

TEST_F(Example, GasCyclingSendsItsGasAndMakesLeanerGas) {
  RunToTheEnd("gas_cycling");
  const Table field = Read("field.csv");
  ASSERT_EQ(field.Rows(), 96U);
  EXPECT_NEAR(field.Number(0, "gas injected (MMscf/d)"), 24, 1e-3);
  const double gas = field.Number(0, "gas (MMscf/d)");
  EXPECT_LE(gas, 32.01);
  EXPECT_NEAR(field.Number(0, "oil (STB/d)") / gas, 70, 20) << "a rich gas";
  EXPECT_LT(field.Number(95, "oil (STB/d)"), 0.6 * field.Number(0, "oil (STB/d)"));
}

}  // namespace
}  // namespace gantry::fieldrun::test
