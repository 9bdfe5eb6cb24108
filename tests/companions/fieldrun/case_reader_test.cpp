#include "fieldrun/case/case_reader.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "support/play.h"
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

TEST_F(CaseReader, TakesNumbersInTheirUnitsAndPathsFromTheFolderOfTheCase) {
  const CaseModel model =
      Read(std::string("case.units = 'metric'\n") + kSimulator + kTime +
           "step = 30.5\n[[tubing]]\nname = 't'\ndepth = 1000\ndiameter = 101.6\n"
           "bottom_temperature = 100\n"
           "[[well]]\nname = 'P'\nkind = 'producer'\nmax_liquid = 158.987\n"
           "max_gas = 28.174\nmin_bottom_hole_pressure = 100\n");
  EXPECT_NEAR(model.tubings[0].depth, 3280.84, 0.01);
  EXPECT_NEAR(model.tubings[0].diameter, 4, 1e-9);
  EXPECT_NEAR(model.tubings[0].bottomTemperature, 212, 1e-9);
  EXPECT_NEAR(*model.wells[0].maxLiquid, 1000, 1e-6);
  EXPECT_NEAR(*model.wells[0].maxGas, 1, 1e-9);
  EXPECT_NEAR(*model.wells[0].minBottomHolePressure, 1435.68, 0.01);
  EXPECT_EQ(model.time.stepDays, 30.5);
  EXPECT_EQ(Read(std::string(kSimulator) + kTime + "step = 'month'").time.stepDays, 0);
  EXPECT_EQ(model.simulator.deck, (folder_ / "A.afi").string());
  EXPECT_EQ(model.general.output, (folder_ / "results").string());
  EXPECT_EQ(model.general.title, "case");
}

TEST_F(CaseReader, RefusesWhatCantRunWithEveryLineAtFault) {
  const std::string start = std::string(kSimulator) + kTime;
  const std::map<std::string, std::string> starts = {
      {"nothing", ""},
      {"simulator", kSimulator},
      {"start", start},
      {"producer", start + "[[well]]\nname = 'P'\nkind = 'producer'\n"},
      {"injector", start + "[[well]]\nname = 'I'\nkind = 'gas_injector'\n"},
      {"events", start + "[[well]]\nname = 'P'\nkind = 'producer'\n"
                         "[[well]]\nname = 'I'\nkind = 'gas_injector'\ngas_rate = 1\n"
                         "[[well]]\nname = 'L'\nkind = 'producer'\nconnected = false\n"
                         "[[group]]\nname = 'plant'\n"},
      {"UTF-16", "\xFF\xFE["},
      {"UTF-16 without a mark", {"[\0c\0", 4}},
      {"UTF-8 with a mark", std::string("\xEF\xBB\xBF") + kSimulator},
      {"long name", "simulator.deck = '" + std::string(5000, 'x') + "'\n"}};
  for (const test::Scene& scene : test::ScenesOf(FIELDRUN_REFUSED_CASES)) {
    std::string text = starts.at(scene.name);
    for (const std::string& line : scene.lines) {
      if (!line.starts_with("-> ")) text += line + "\n";
    }
    std::string said = Complaint(text);
    for (const std::string& line : scene.lines) {
      if (!line.starts_with("-> ")) continue;
      EXPECT_TRUE(said.starts_with(line.substr(3))) << text << line << "\nsaid: " << said;
      said.erase(0, said.find('\n') + 1);
    }
  }
}

}  // namespace
}  // namespace gantry::fieldrun
