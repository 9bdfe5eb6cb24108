// What settings and wells say of themselves, as it stands in settings.cases.

#include <sstream>

#include "client/query_results.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "sessions/version_code.h"
#include "settings/link_settings.h"
#include "settings/machine_config.h"
#include "support/cases.h"
#include "support/test_folder.h"
#include "wells/exported_variables.h"
#include "wells/source.h"
#include "wells/static_well_data.h"
#include "wells/well_variable_catalogue.h"

namespace gantry::test {
namespace {

/// Key, simulator's item, label, code, unit family, kind, and how many values with four components.
std::string TextOf(const CExportedVariable& variable) {
  std::ostringstream text;
  text << variable.Key << ',' << variable.SimulatorItem << ',' << variable.Label << ','
       << variable.Code << ',' << variable.UnitFamily << ',' << int32_t(variable.Kind) << ','
       << variable.EntryCount(4);
  return text.str();
}

IPRPoint PointOf(std::istream& words) {
  IPRPoint point;
  words >> point.OilRate >> point.WaterRate >> point.GasRate;
  return point;
}

const Kinds kKinds = {
    {"dataset",
     [](const Columns& c) {
       LinkSettings settings;
       settings.FileName = c[0];
       const std::string directory = settings.GetCaseDirectory(), name = settings.GetCaseBaseName();
       EXPECT_EQ(settings.GetScriptFileName(), directory + name + "_py.py");
       return Columns{directory, name};
     }},
    {"version",
     [](const Columns& c) { return Columns{std::to_string(VersionCodeFromPath(c[0]))}; }},
    {"exposed",
     [](const Columns& c) {
       const TestFolder folder;
       platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey)
           ->WriteText("UserProperties", c[0]);
       std::string properties;
       for (const auto& property : CIXConfig().UserProperties) {
         properties += TextOf(CExportedVariable(*property)) + ";";
       }
       return Columns{properties};
     }},
    {"catalogue",
     [](const Columns& c) {
       return Columns{TextOf(CExportedVariable(WellVariableCatalogue.at(std::stoul(c[0]))))};
     }},
    {"gaswell",
     [](const Columns& c) {
       Source source;
       for (std::istringstream points(c[0]); points >> std::ws, !points.eof();) {
         const IPRPoint point = PointOf(points);
         source.SimulatorIPR.Pressure.push_back(point.Pressure);
         source.SimulatorIPR.OilRate.push_back(point.OilRate);
         source.SimulatorIPR.GasRate.push_back(point.GasRate);
         source.SimulatorIPR.WaterRate.push_back(point.WaterRate);
       }
       return Columns{source.IsGasWell() ? "yes" : "no"};
     }},
    {"control", [](const Columns& c) {
       std::istringstream words(c[0]);
       std::string type;
       int32_t mode = 0;
       words >> type >> mode;
       Source source;
       source.SourceType = ClassifyWellType(type);
       source.OpPoint = PointOf(words);
       Strings items(3, "old");
       Doubles values(3, 0.5);
       std::vector<int32_t> codes(3, 9);
       ChooseControl(source, mode, {items, values, codes});
       std::ostringstream shown;
       for (size_t i = 0; i < items.size(); ++i) {
         shown << items[i] << ' ' << values.at(i) << ' ' << codes.at(i) << ';';
       }
       return Columns{shown.str()};
     }}};

TEST(SettingsAndWells, AreAsTheCasesSay) {
  ExpectCases(GANTRY_SETTINGS_FILES "/settings.cases", kKinds);
  const int32_t code = platform::kPathSeparator == '/' ? 20162 : 100000;
  EXPECT_EQ(VersionCodeFromPath("/opt/2016.2/ix"), code) << "by this system's separator";
}

TEST(StaticWells, ShowTheModeOfTheLastTakeOneForAllAndAreFoundByName) {
  StaticWellDataCollection wells;
  EXPECT_EQ(wells.OpMode(), 0);
  for (const char* name : {"A", "B", "B"}) wells.Items.emplace_back().Name = name;
  wells.Items[2].OpMode = 2;
  wells.SetOpMode(-1);
  EXPECT_EQ(wells.OpMode(), 2);
  wells.SetOpMode(3);
  int32_t index = 9;
  EXPECT_EQ(wells.Find("B", &index), &wells.Items[1]);
  EXPECT_EQ(wells.Items[static_cast<size_t>(index)].OpMode, 3);
  EXPECT_EQ(wells.Find("b", &index), nullptr);
  EXPECT_EQ(index, -1);
}

}  // namespace
}  // namespace gantry::test
