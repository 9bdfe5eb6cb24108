// Lift tables beside those of OPM Flow. Needs flow and its summary tool.

#include <cstdlib>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fieldrun/case/vfp_table.h"
#include "program.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;
using enum toml_reader::Quantity;

class WithFlow : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v flow summary >/dev/null") != 0) {
      GTEST_SKIP()
          << "flow isn't installed (Debian packages libopm-simulators-bin, libopm-common-bin)";
    }
  }

  /// Runs a deck, changed by a script of the tests, and holds each well's table of a number in a
  /// file to flow's pressures at its report times.
  void Compare(const fs::path& deck, const char* script, const char* tables,
               const std::vector<std::pair<std::string, int>>& wells) {
    const Outcome changed =
        RunInFolder(folder_, "sed", {"-f", std::string(LIFT "/") + script, deck.string()});
    folder_.Write("D.DATA", changed.out);
    const Outcome run = RunInFolder(folder_, "flow", {"D.DATA"});
    ASSERT_EQ(run.status, 0) << changed.err << run.out << run.err;
    for (const auto& [well, number] : wells) {
      const VfpTable table = ReadVfpTable((folder_ / tables).string(), number, UnitSystem::kField);
      std::vector<std::string> arguments{"-r", "D.SMSPEC"};
      const char kPhase = table.isProducer ? 'P' : 'I';
      for (const char* vector : {"WTHP", "WBHP", "WO{}R", "WW{}R", "WG{}R", "WGLIR"}) {
        arguments.push_back(fmt::format(fmt::runtime(vector), kPhase) + ":" + well);
      }
      EXPECT_GT(CompareRows(table, RunInFolder(folder_, "summary", arguments).out), 3) << well;
    }
  }

  gantry::test::TestFolder folder_;

 private:
  static int CompareRows(const VfpTable& table, const std::string& rows) {
    std::istringstream lines(rows);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream numbers(line);
      double head = 0, foot = 0, oil = 0, water = 0, gas = 0, lift = 0;
      if (!(numbers >> head >> foot >> oil >> water >> gas >> lift) || foot <= 0) continue;
      const bool isField = table.units == UnitSystem::kField;
      const auto gauge = [&](double absolute) {
        return isField ? absolute - toml_reader::kAtmosphere
                       : ToField(absolute, kGaugePressure, UnitSystem::kMetric);
      };
      const double own = table.FootPressure(
          gauge(head), lift,
          {ToField(oil, kLiquidRate, table.units), ToField(water, kLiquidRate, table.units),
           ToField(gas / 1000, kGasRate, table.units)});
      EXPECT_NEAR(own, gauge(foot), 0.02) << line;
      ++count;
    }
    return count;
  }
};

TEST_F(WithFlow, LiftTablesGiveFlowsOwnPressuresInFieldUnits) {
  for (const char* tables : {"oil_wor_gor", "liq_wct_glr", "gas_wgr_ogr"}) {
    fs::copy_file(LIFT "/" + std::string(tables) + ".VFP", folder_ / "LIFT.VFP",
                  fs::copy_options::overwrite_existing);
    Compare(EXAMPLES "/odeh/ODEH.DATA", "odeh.sed", "LIFT.VFP", {{"PROD", 1}, {"INJ", 2}});
  }
}

TEST_F(WithFlow, LiftTablesGiveFlowsOwnPressuresWithLiftGasInMetricUnits) {
  const fs::path deck = fs::path(DECKS) / "wlift/2_WLIFT_MODEL5_NOINC.DATA";
  if (!fs::exists(deck)) GTEST_SKIP() << "the public decks don't stand beside the checkout";
  Compare(deck, "wlift.sed", "D.DATA",
          {{"B-1H", 1}, {"B-2H", 1}, {"B-3H", 1}, {"C-1H", 1}, {"C-2H", 1}});
}

}  // namespace
}  // namespace gantry::fieldrun::test
