#include "fieldrun/case/case_reader.h"

#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_keys.h"
#include "support/raised.h"
#include "support/test_folder.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kSimulator = "[simulator]\ndeck = 'A.afi'\n";
constexpr const char* kTime = "[time]\nsteps = 3\n";

class CaseReader : public ::testing::Test {
 protected:
  CaseReader() {
    for (const char* deck : {"A.afi", "A B.afi"}) folder_.Write(deck, "");
    folder_.Write("I.VFP", "VFPINJ\n1 0 GAS /\n1 /\n1 /\n1 1 /\n");
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

struct RefusedCase {
  std::string text;
  std::vector<std::string> complaints = {};  ///< how each line begins
};

std::vector<RefusedCase> RefusedCases() {
  const std::string start = std::string(kSimulator) + kTime;
  const std::map<std::string, std::string> starts = {
      {"", ""},
      {"simulator", kSimulator},
      {"start", start},
      {"producer", start + "[[well]]\nname = 'P'\nkind = 'producer'\n"},
      {"injector", start + "[[well]]\nname = 'I'\nkind = 'gas_injector'\n"},
      {"events", start + "[[well]]\nname = 'P'\nkind = 'producer'\n"
                         "[[well]]\nname = 'I'\nkind = 'gas_injector'\ngas_rate = 1\n"
                         "[[well]]\nname = 'L'\nkind = 'producer'\nconnected = false\n"
                         "[[group]]\nname = 'plant'\n"}};
  std::vector<RefusedCase> cases = {
      {"\xFF\xFE[", {":1: the file is in UTF-16; save it in UTF-8"}},
      {{"[\0c\0", 4}, {":1: the file is in UTF-16; save it in UTF-8"}},
      {"simulator.deck = '" + std::string(5000, 'x') + "'\n" + kTime, {":1: no such dataset"}}};
  std::istringstream lines(test::TestFolder::Read(FIELDRUN_REFUSED_CASES));
  for (std::string line; std::getline(lines, line);) {
    RefusedCase& last = cases.back();
    if (line.starts_with("-> "))
      last.complaints.push_back(line.substr(3));
    else if (line.starts_with("=="))
      cases.push_back({starts.at(line.substr(2))});
    else if (last.complaints.empty())
      last.text += line + "\n";
  }
  return cases;
}

TEST_F(CaseReader, RefusesWhatCantRunWithEveryLineAtFault) {
  for (const auto& [text, complaints] : RefusedCases()) {
    const std::string said = Complaint(text);
    size_t line = 0;
    for (const std::string& complaint : complaints) {
      EXPECT_EQ(said.substr(line, complaint.size()), complaint) << text;
      line = said.find('\n', line) + 1;
    }
  }
}

TEST_F(CaseReader, PassesAByteOrderMarkAndWarnsOfWhatCanHardlyBeMeant) {
  const CaseModel model =
      Read(std::string("\xEF\xBB\xBF") + kSimulator + "[time]\nsteps = 99999\n");
  EXPECT_EQ(model.warnings.size(), 1U);
}

TEST_F(CaseReader, SaysWhyNothingCanBeReadFromAPath) {
  const auto reason = [](const std::string& path) { return test::Raised([&] { ReadCase(path); }); };
  const std::string missing = (folder_ / "none.toml").string();
  EXPECT_EQ(reason(missing), "exception: " + missing + ":1: no such file");
  const std::string folder = folder_.Path().string();
  EXPECT_EQ(reason(folder), "exception: " + folder + ":1: this is a folder, not a file");
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
