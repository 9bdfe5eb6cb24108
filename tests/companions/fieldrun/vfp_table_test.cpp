// Lift tables in files of the keywords VFPPROD and VFPINJ.

#include "fieldrun/case/vfp_table.h"

#include <cmath>
#include <functional>
#include <random>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fieldrun/case/case_model.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

using Values = std::vector<double>;

// Of these the pressure is a product in every axis, so that it holds between and beyond the values.
double Pressure(double flow, double head, double water, double gas, double lift) {
  return (50 + flow / 100) * (1 + head / 200) * (2 + water) * (3 - gas / 900) * (1 - lift / 999);
}

std::string Producer(const std::string& types, const std::string& units) {
  const Values flows = {100, 400, 1500};
  const Values heads = {10, 30};
  const Values waters = {0, 0.25, 0.75};
  const Values gases = {20, 200};
  const Values lifts = {0, 100};
  std::string text = fmt::format(
      "-- made by hand\nGRID\n/\nvfpprod -- the table\n 7 2000 {} 'THP' GRAT {} BHP / and more\n"
      "{} /\n{} /\n{} -- water\n /\n{} /\n{} /\n",
      types, units, fmt::join(flows, " "), fmt::join(heads, "\n"), fmt::join(waters, ","),
      fmt::join(gases, " "), fmt::join(lifts, " "));
  for (size_t i = 0; i < 24; ++i) {
    const size_t at[] = {i / 12, i / 4 % 3, i / 2 % 2, i % 2};
    text += fmt::format("{} {} {} {}", at[0] + 1, at[1] + 1, at[2] + 1, at[3] + 1);
    for (const double flow : flows) {
      text += fmt::format(" {}",
                          Pressure(flow, heads[at[0]], waters[at[1]], gases[at[2]], lifts[at[3]]));
    }
    text += " /\n";
  }
  return text;
}

constexpr const char* kInjector =
    "VFPINJ\n3 2000 WAT 1* FIELD /\n0 1.0D3 2000 /\n100 500 /\n1 1000 2*900 /\n2 1400 2*1300 /\n";

class Vfp : public ::testing::Test {
 protected:
  VfpTable Read(const std::string& text, std::optional<int> number = {}) const {
    return ReadVfpTable(folder_.Write("T.VFP", text).string(), number, UnitSystem::kMetric);
  }
  std::string Complaint(const std::string& text, std::optional<int> number = {}) const {
    try {
      Read(text, number);
    } catch (const CaseError& error) {
      return error.Findings[0].In("");
    }
    return "none";
  }

  test::TestFolder folder_;
};

TEST_F(Vfp, IsReadStraightBetweenItsValuesAndBeyondInEveryKindOfAxis) {
  using Ratio = std::function<double(double oil, double water, double gas)>;
  const struct {
    const char* types;
    const char* units;
    Ratio flow, water, gas;
  } kCases[] = {
      {"LIQ WCT GOR", "METRIC", [](auto o, auto w, auto) { return o + w; },
       [](auto o, auto w, auto) { return w / (o + w); },
       [](auto o, auto, auto g) { return g / o; }},
      {"OIL WOR GLR", "'    '", [](auto o, auto, auto) { return o; },
       [](auto o, auto w, auto) { return w / o; },
       [](auto o, auto w, auto g) { return g / (o + w); }},
      {"GAS WGR OGR", "FIELD", [](auto, auto, auto g) { return g; },
       [](auto, auto w, auto g) { return w / g; }, [](auto o, auto, auto g) { return o / g; }}};
  std::mt19937 random(3);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution(low, high)(random);
  };
  for (const auto& c : kCases) {
    const VfpTable table = Read(Producer(c.types, c.units));
    const bool isField = table.units == UnitSystem::kField;
    EXPECT_EQ(isField, std::string(c.units) == "FIELD");
    for (int i = 0; i < 50; ++i) {
      const double oil = between(10, 2000), water = between(0, 3000), gas = between(1e3, 5e5);
      const double head = between(5, 60), lift = between(0, 150);
      const double expected = Pressure(c.flow(oil, water, gas), head, c.water(oil, water, gas),
                                       c.gas(oil, water, gas), lift);
      // Sm3 and bara, else STB, Mscf and psia.
      const double liquid = isField ? 1 : 6.289811, volume = isField ? 1e-3 : 1e-3 / 28.174;
      const double pressure = isField ? 1 : 14.50377;
      const double foot = table.FootPressure(pressure * head - 14.696, lift,
                                             {liquid * oil, liquid * water, volume * gas});
      EXPECT_NEAR((foot + 14.696) / pressure, expected, 0.02) << c.types;
    }
  }
}

TEST_F(Vfp, GoesFromValueToValueAndSaysWhereItEnds) {
  const std::string text =
      "VFPINJ\n3 2000 WAT THP FIELD BHP /\n0 1000 2000 /\n100 500 /\n1 1000 900 700 /\n"
      "2 1400 1300 1000 /\n";
  const VfpTable table = Read(text + Producer("LIQ WCT GOR", "METRIC"), 3);
  EXPECT_FALSE(table.isProducer);
  const auto at = [&](double water, double head) {
    return table.FootPressure(head - kAtmosphere, 0, {0, water, 0}) + kAtmosphere;
  };
  EXPECT_NEAR(at(1500, 100), 800, 1e-9);
  EXPECT_NEAR(at(500, 300), 1150, 1e-9);
  EXPECT_NEAR(at(3000, 100), 500, 1e-9);
  EXPECT_EQ(table.BeyondAxes(200, 5, {0, 1900, 0}), "");
  EXPECT_EQ(table.BeyondAxes(600, 5, {0, 2500, 0}),
            "water 2500 (0 to 2000), head pressure 614.7 (100 to 500)");
}

TEST_F(Vfp, TellsTheLineOfWhatIsBroken) {
  EXPECT_EQ(Complaint(kInjector), "none");
  std::istringstream lines(test::TestFolder::Read(FIELDRUN_VFP_FAULTS));
  for (std::string line; std::getline(lines, line);) {
    const size_t first = line.find(" => "), second = line.find(" => ", first + 1);
    std::string text = kInjector;
    text.replace(text.find(line.substr(0, first)), first,
                 line.substr(first + 4, second - first - 4));
    EXPECT_EQ(Complaint(text), line.substr(second + 4));
  }
  const std::string two = Producer("LIQ WCT GOR", "METRIC");
  EXPECT_EQ(Complaint(two + two), ":40: this is a second table: vfp_table says which to take");
  EXPECT_EQ(Complaint(two + two, 7), ":40: there are two tables 7");
  EXPECT_EQ(Complaint(two, 8), ":1: there is no lift table 8 (VFPPROD or VFPINJ)");
}

}  // namespace
}  // namespace gantry::fieldrun
