#include "host/case_reader.h"

#include <string>

#include <gtest/gtest.h>

#include "host/case_keys.h"
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
  // What the reader says about a file, without the folder.
  std::string Complaint(const std::string& text) const {
    try {
      Read(text);
    } catch (const CaseError& error) {
      const std::string what = error.what();
      return what.substr(what.find("case.toml") + 9);
    }
    return "no complaint";
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
      {start + "[extra]\n", ":5: a case has no section \"extra\""},
      {start + "[[case]]\n", ":5: case must be a section, [case]"},
      {start + "[well]\nname = 'P'\n", ":5: well must be a list of sections, [[well]]"},
      {producer + "max_oill = 3\n", ":8: [well] has no key \"max_oill\""},
      {start + "[[well]]\nname = 'P'\n", ":5: [well] needs the key \"kind\""},
      {producer + "max_oil = 'much'\n", ":8: max_oil must be a number"},
      {producer + "max_oil = -1\n", ":8: max_oil must be at least 0 STB/d"},
      {producer + "max_oil = nan\n", ":8: max_oil must be a finite number"},
      {producer + "control = 'none'\n", ":8: control can't be \"none\""},
      {producer + "connected = 1\n", ":8: connected must be true or false"},
      {producer + "gas_rate = 1\n", ":8: gas_rate means nothing for a producer"},
      {producer + "tubing = 'x'\n", ":8: there is no tubing \"x\""},
      {producer + "[[well]]\nname = 'P'\nkind = 'producer'\n", ":9: there are two wells \"P\""},
      {injector, ":5: injector \"I\" needs either gas_rate or bottom_hole_pressure"},
      {injector + "gas_rate = 1\ncomposition = [0.5, 0.4]\n",
       ":9: the fractions of composition must sum to 1, not 0.9"},
      {start + "[[group]]\nname = 'G'\nwells = ['Q']\n", ":7: there is no well \"Q\""},
      {"[simulator]\ndeck = 'B.afi'\n[time]\nsteps = 1\n", ":2: no such dataset"},
      {"[simulator]\ndeck = '" + std::string(5000, 'x') + "'\n[time]\nsteps = 1\n",
       ":2: no such dataset"},
      {"[simulator]\ndeck = 'A B.afi'\n[time]\nsteps = 1\n",
       ":2: the dataset's name can't hold a blank"},
      {std::string(kSimulator) + "[time]\nsteps = 1\nend = 2020-01-01\n",
       ":3: [time] needs one, and only one, of the keys end, duration and steps"},
      {std::string(kSimulator) + "[time]\nstart = 2020-01-01\nend = 2020-01-01\n",
       ":5: end must lie after start"},
      {std::string(kSimulator) + "[time]\nsteps = 0\n", ":4: steps must be at least 1"},
      {std::string(kSimulator) + "[time]\nend = '2020-01-01'\n", ":4: end must be a date"},
      {std::string(kSimulator) + "[time]\nsteps = 99999999999\n", ":4: steps must be smaller"},
  };
  for (const auto& [text, complaint] : kCases) {
    EXPECT_EQ(Complaint(text).substr(0, complaint.size()), complaint) << text;
  }
}

TEST_F(CaseReader, NamesACaseFileThatIsntThere) {
  EXPECT_THROW(ReadCase((folder_ / "none.toml").string()), CaseError);
  EXPECT_THROW(ReadCase(folder_.Path().string()), CaseError);
}

TEST(CaseReference, ShowsEveryKeyWithItsUnitsAndChoices) {
  const std::string text = CaseReference();
  EXPECT_NE(text.find("[[well]]"), std::string::npos);
  EXPECT_NE(text.find("number, STB/d or Sm3/d"), std::string::npos);
  EXPECT_NE(text.find("\"rate\", \"combined\", \"liquid\", \"gas\"; else rate"), std::string::npos);
  for (const auto& row : WellKeys()) {
    EXPECT_NE(text.find("  " + std::string(row.about.name) + " "), std::string::npos);
  }
}

}  // namespace
}  // namespace gantry::fieldrun
