// Lift tables beside those of OPM Flow. Needs flow and its summary tool.

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fieldrun/case/vfp_table.h"
#include "program.h"

namespace gantry::fieldrun::test {
namespace {

namespace fs = std::filesystem;
using enum toml_reader::Quantity;

std::string Replaced(std::string text, const std::string& part, const std::string& replacement) {
  const size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), replacement);
}

class WithFlow : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v flow summary >/dev/null") != 0) {
      GTEST_SKIP()
          << "flow isn't installed (Debian packages libopm-simulators-bin, libopm-common-bin)";
    }
  }

  /// Runs a deck, and holds each well's table of a number to flow's pressures at its report times.
  void Compare(const std::string& deck, const std::vector<std::pair<std::string, int>>& wells,
               double tolerance) {
    folder_.Write("D.DATA", deck);
    const Outcome run = RunInFolder(folder_, "flow", {"D.DATA"});
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    for (const auto& [well, number] : wells) {
      const VfpTable table =
          ReadVfpTable((folder_ / "D.DATA").string(), number, UnitSystem::kField);
      std::vector<std::string> arguments{"-r", "D.SMSPEC"};
      const char kPhase = table.isProducer ? 'P' : 'I';
      for (const char* vector : {"WTHP", "WBHP", "WO{}R", "WW{}R", "WG{}R", "WGLIR"}) {
        arguments.push_back(fmt::format(fmt::runtime(vector), kPhase) + ":" + well);
      }
      EXPECT_GT(CompareRows(table, RunInFolder(folder_, "summary", arguments).out, tolerance), 3)
          << well;
    }
  }

  gantry::test::TestFolder folder_;

 private:
  static int CompareRows(const VfpTable& table, const std::string& rows, double tolerance) {
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
      EXPECT_NEAR(own, gauge(foot), tolerance) << line;
      ++count;
    }
    return count;
  }
};

/// A table of numbers that bend, for the producer, and one for the injector.
std::string Tables(const std::string& types, const std::vector<double>& flows,
                   const std::vector<double>& gases) {
  std::string text = fmt::format(
      "VFPPROD\n1 8400 {} THP ' ' FIELD BHP /\n{} /\n500 1000 2500 /\n0 1 /\n{} /\n0 /\n", types,
      fmt::join(flows, " "), fmt::join(gases, " "));
  for (size_t i = 0; i < 3 * 2 * gases.size(); ++i) {
    const size_t head = i % 3, water = i / 3 % 2, gas = i / 6;
    text += fmt::format("{} {} {} 1", head + 1, water + 1, gas + 1);
    for (size_t flow = 0; flow < flows.size(); ++flow) {
      text += fmt::format(" {}", 900 + 1500 * head + 300 * flow * flow + 500 * water -
                                     120 * gas * gas + 40 * flow * gas);
    }
    text += " /\n";
  }
  return text +
         "VFPINJ\n2 8335 GAS THP FIELD BHP /\n20000 90000 150000 /\n1000 4000 9000 /\n"
         "1 1900 1700 1200 /\n2 5200 4800 4100 /\n3 9800 9100 8000 /\n";
}

TEST_F(WithFlow, LiftTablesGiveFlowsOwnPressuresInFieldUnits) {
  const struct {
    const char* types;
    std::vector<double> flows, gases;
  } kCases[] = {{"OIL WOR GOR", {2000, 12000, 18000, 30000}, {0.8, 1.5, 4}},
                {"LIQ WCT GLR", {2000, 9000, 18000}, {0.8, 2, 5}},
                {"GAS WGR OGR", {9000, 40000, 90000}, {0.2, 0.5, 0.9}}};
  const std::string odeh = gantry::test::TestFolder::Read(fs::path(EXAMPLES) / "odeh/ODEH.DATA");
  for (const auto& [types, flows, gases] : kCases) {
    std::string deck = Replaced(odeh, "FOPR\n",
                                "WTHP\n/\nWBHP\n/\nWOPR\n/\nWWPR\n/\nWGPR\n/\n"
                                "WOIR\n/\nWWIR\n/\nWGIR\n/\nWGLIR\n/\nFOPR\n");
    deck = Replaced(deck, "WELLDIMS", "VFPPDIMS\n 9 9 9 9 9 9 /\nVFPIDIMS\n 9 9 9 /\nWELLDIMS");
    deck = Replaced(deck, "WELSPECS", Tables(types, flows, gases) + "WELSPECS");
    deck = Replaced(deck, "20000 4* 1000 /", "20000 4* 1000 1* 1 /");
    deck = Replaced(deck, "100000 1* 9014 /", "100000 1* 9014 1* 2 /");
    deck = Replaced(deck, "1 FEB 2025 /", "1 JAN 2016 /\n1 JAN 2017 /\n1 JAN 2018 /\n1 JAN 2019 /");
    Compare(deck, {{"PROD", 1}, {"INJ", 2}}, 0.02);
  }
}

TEST_F(WithFlow, LiftTablesGiveFlowsOwnPressuresWithLiftGasInMetricUnits) {
  const fs::path file = fs::path(DECKS) / "wlift/2_WLIFT_MODEL5_NOINC.DATA";
  if (!fs::exists(file)) GTEST_SKIP() << "the public decks don't stand beside the checkout";
  std::string deck = gantry::test::TestFolder::Read(file);
  // The wells' pressures are told at the depth of the table.
  for (const char* well : {"11    3 ", " 4    7 ", "11   12 ", "13   20 ", "12   27 "}) {
    deck = Replaced(deck, std::string(well) + "     1*   OIL", std::string(well) + "   1836   OIL");
  }
  Compare(deck, {{"B-1H", 1}, {"B-2H", 1}, {"B-3H", 1}, {"C-1H", 1}, {"C-2H", 1}}, 0.02);
}

}  // namespace
}  // namespace gantry::fieldrun::test
