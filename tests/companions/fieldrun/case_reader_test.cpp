#include "fieldrun/case/case_reader.h"

#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_keys.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kSimulator = "[simulator]\ndeck = 'A.afi'\n";
constexpr const char* kTime = "[time]\nsteps = 3\n";

class CaseReader : public ::testing::Test {
 protected:
  CaseReader() {
    for (const char* deck : {"A.afi", "A B.afi"}) folder_.Write(deck, "");
  }

  CaseModel Read(const std::string& text) const {
    return ReadCase(folder_.Write("case.toml", text).string());
  }
  // All that the reader says about a file, without the folder.
  std::string Complaint(const std::string& text) const {
    std::string complaint;
    const std::string file = folder_.Write("case.toml", text).string();
    for (const Finding& finding : ReadAndCheckCase(file).findings) {
      complaint += finding.In("") + "\n";
    }
    return complaint;
  }

  test::TestFolder folder_;
};

TEST_F(CaseReader, ConvertsMetricNumbersToFieldUnits) {
  const CaseModel model = Read(std::string("case.units = 'metric'\n") + kSimulator + kTime +
                               "[[tubing]]\nname = 't'\ndepth = 1000\ndiameter = 101.6\n"
                               "bottom_temperature = 100\n"
                               "[[well]]\nname = 'P'\nkind = 'producer'\nmax_liquid = 158.987\n"
                               "max_gas = 28.174\nmin_bottom_hole_pressure = 100\n");
  EXPECT_NEAR(model.tubings[0].depth, 3280.84, 0.01);
  EXPECT_NEAR(model.tubings[0].diameter, 4, 1e-9);
  EXPECT_NEAR(model.tubings[0].bottomTemperature, 212, 1e-9);
  EXPECT_NEAR(*model.wells[0].maxLiquid, 1000, 1e-6);
  EXPECT_NEAR(*model.wells[0].maxGas, 1, 1e-9);
  EXPECT_NEAR(*model.wells[0].minBottomHolePressure, 1435.68, 0.01);
}

TEST_F(CaseReader, TakesPathsFromTheFolderOfTheCase) {
  const CaseModel model = Read(std::string(kSimulator) + kTime);
  EXPECT_EQ(model.simulator.deck, (folder_ / "A.afi").string());
  EXPECT_EQ(model.general.output, (folder_ / "results").string());
  EXPECT_EQ(model.general.title, "case");
}

TEST_F(CaseReader, TakesAStepInDaysOrInCalendarMonths) {
  EXPECT_EQ(Read(std::string(kSimulator) + "[time]\nsteps = 3\nstep = 30.5").time.stepDays, 30.5);
  EXPECT_EQ(Read(std::string(kSimulator) + "[time]\nsteps = 3\nstep = 'month'").time.stepDays, 0);
}

TEST_F(CaseReader, RefusesWhatCantRunWithTheLineAtFault) {
  const std::string start = std::string(kSimulator) + kTime;  // four lines
  const std::string producer = start + "[[well]]\nname = 'P'\nkind = 'producer'\n";
  const std::string injector = start + "[[well]]\nname = 'I'\nkind = 'gas_injector'\n";
  const struct {
    std::string text;
    std::string complaint;
  } kCases[] = {
      {"[simulator\n", ":1: "},
      {"title = 1\n[*x]\n", ":2: this is no TOML"},
      {"title = 'é'\nb\xE2\x80\xAF= 1\n", ":2: only texts and comments may go beyond ASCII"},
      {"\xFF\xFE[", ":1: the file is in UTF-16; save it in UTF-8"},
      {std::string("[\0c\0", 4), ":1: the file is in UTF-16; save it in UTF-8"},
      {start + "[extra]\n", ":5: a case has no section \"extra\"\n"},
      {start + "[[wel]]\n", ":5: a case has no section \"wel\"; did you mean \"well\"?\n"},
      {start + "[[case]]\n", ":5: case must be a section, [case]"},
      {start + "[well]\nname = 'P'\n", ":5: well must be a list of sections, [[well]]"},
      {producer + "max_oill = 3\n",
       ":8: [well] has no key \"max_oill\"; did you mean \"max_oil\"?\n"},
      {start + "[[well]]\nname = 'P'\n", ":5: [well] needs the key \"kind\""},
      {producer + "max_oil = 'much'\n", ":8: max_oil must be a number"},
      {producer + "max_oil = -1\n", ":8: max_oil must be at least 0 STB/d"},
      {producer + "max_oil = nan\n", ":8: max_oil must be a finite number"},
      {producer + "control = 'liqiud'\n",
       ":8: control can't be \"liqiud\"; it must be one of \"rate\", \"combined\", \"liquid\", "
       "\"gas\"; did you mean \"liquid\"?\n"},
      {producer + "connected = 1\n", ":8: connected must be true or false"},
      {producer + "gas_rate = 1\n", ":8: gas_rate means nothing for a producer"},
      {producer + "tubing = 'x'\n", ":8: there is no tubing \"x\""},
      {producer + "[[well]]\nname = 'P'\nkind = 'producer'\n", ":9: there are two wells \"P\""},
      {injector, ":5: injector \"I\" needs either gas_rate or bottom_hole_pressure"},
      {injector + "gas_rate = 1\ncomposition = [0.5, 0.4]\n",
       ":9: the fractions of composition must sum to 1, not 0.9"},
      {injector + "gas_rate = 1\n[[group]]\nname = 'G'\nwells = ['Q', 'i']\n",
       ":11: there is no well \"Q\"\n:11: there is no well \"i\"; did you mean \"I\"?\n"},
      {"[simulator]\ndeck = 'B.afi'\n[time]\nsteps = 1\n", ":2: no such dataset"},
      {"[simulator]\ndeck = '" + std::string(5000, 'x') + "'\n[time]\nsteps = 1\n",
       ":2: no such dataset"},
      {"[simulator]\ndeck = 'A B.afi'\n[time]\nsteps = 1\n",
       ":2: the dataset's name can't hold a blank"},
      {std::string(kSimulator) + "[time]\nsteps = 1\nend = 2020-01-01\n",
       ":3: [time] needs one, and only one, of the keys end, duration and steps"},
      {std::string(kSimulator) + "[time]\nstart = 2020-01-01\nend = 2020-01-01\n",
       ":5: end must lie after start"},
      {std::string(kSimulator) + "[time]\nsteps = 3\nstep = 'week'\n",
       ":5: step can't be \"week\"; it must be a number of days or \"month\"\n"},
      {std::string(kSimulator) + "[time]\nsteps = 0\n", ":4: steps must be at least 1"},
      {std::string(kSimulator) + "[time]\nend = '2020-01-01'\n", ":4: end must be a date"},
      {std::string(kSimulator) + "[time]\nsteps = 99999999999\n", ":4: steps must be smaller"},
  };
  for (const auto& [text, complaint] : kCases) {
    EXPECT_EQ(Complaint(text).substr(0, complaint.size()), complaint) << text;
  }
}

TEST_F(CaseReader, TellsAllFaultsAndWhatCanHardlyBeMeantByLines) {
  EXPECT_EQ(
      Complaint(std::string("case.units = 'metric'\n") + kSimulator +
                "[time]\nsteps = 0\n"
                "[network]\nmanifold_pressure = 1e30\nwater_gravity = 3\n"
                "[[tubing]]\nname = 't'\ndepth = 2000\ndiameter = 4.4\n"
                "[[well]]\nname = 'P'\nkind = 'producr'\nmax_oil = 40000\ntubing = 'u'\n"),
      ":5: steps must be at least 1\n"
      ":7: warning: manifold_pressure is 1e+30 bara, more than 690.489 bara: it can hardly be "
      "meant\n"
      ":8: water_gravity must be at most 1.5\n"
      ":12: warning: diameter is 4.4 mm, less than 19.05 mm: it can hardly be meant (4.4 in "
      "could)\n"
      ":15: kind can't be \"producr\"; it must be one of \"producer\", \"water_injector\", "
      "\"gas_injector\"; did you mean \"producer\"?\n"
      ":16: warning: max_oil is 40000 Sm3/d, more than 31797.4 Sm3/d: it can hardly be meant "
      "(40000 STB/d could)\n");
  const CaseModel model =
      Read(std::string("\xEF\xBB\xBF") + kSimulator + "[time]\nsteps = 99999\n");
  EXPECT_EQ(model.warnings.size(), 1U) << "and a byte-order mark passes";
}

TEST_F(CaseReader, SaysWhyNothingCanBeReadFromAPath) {
  const auto reason = [](const std::string& path) {
    try {
      ReadCase(path);
    } catch (const CaseError& error) {
      return std::string(error.what()).substr(path.size());
    }
    return std::string();
  };
  EXPECT_EQ(reason((folder_ / "none.toml").string()), ":1: no such file");
  EXPECT_EQ(reason(folder_.Path().string()), ":1: this is a folder, not a file");
}

TEST(CaseSchema, HoldsEveryKeyWithItsTypeAndBounds) {
  const nlohmann::json schema = nlohmann::json::parse(CaseSchema())["properties"];
  const nlohmann::json& well = schema["well"]["items"];
  EXPECT_EQ(well["properties"].size(), WellKeys().size());
  EXPECT_EQ(well["required"], nlohmann::json({"name", "kind"}));
  EXPECT_EQ(well["properties"]["kind"]["enum"][1], "water_injector");
  EXPECT_EQ(well["properties"]["max_water_cut"]["maximum"], 1);
  EXPECT_FALSE(well["properties"]["max_oil"].contains("minimum")) << "its unit isn't known";
  const nlohmann::json& time = schema["time"]["properties"];
  EXPECT_EQ(time["step"]["anyOf"][0]["type"], "number");
  EXPECT_EQ(time["end"]["format"], "date");
}

}  // namespace
}  // namespace gantry::fieldrun
