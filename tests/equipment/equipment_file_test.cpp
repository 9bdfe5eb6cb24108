#include "equipment/equipment_file.h"

#include <gtest/gtest.h>

#include "equipment/equipment_model.h"
#include "settings/link_settings.h"
#include "support/test_folder.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

using Names = std::vector<std::string>;

EquipmentModel Describe(const Names& names, bool withoutVariables, int32_t connectionMode) {
  LinkSettings settings;
  settings.FileName = "/cases/B\xfcrg & Co/FIELD.afi";
  settings.ConnectionMode = connectionMode;
  StaticWellDataCollection wells;
  for (const auto& [name, type] :
       {std::pair{"P<1>", kProducer}, {"I1", kWaterInjector}, {"I2", kInjector}}) {
    StaticWellData& well = wells.Items.emplace_back();
    well.Name = name;
    well.SourceType = type;
  }
  EquipmentModel equipment;
  FillEquipment(equipment, settings, "North field", wells, withoutVariables, names);
  return equipment;
}

void ExpectWritten(const EquipmentModel& equipment, const char* golden) {
  const TestFolder folder;
  const auto file = folder.Write("out.xml", std::string(100000, 'x'));
  EXPECT_EQ(WriteEquipmentFile(equipment, file.string()), 0);
  std::string text = TestFolder::Read(file);
  std::erase(text, '\r');  // of the platform's line ends
  EXPECT_EQ(text, TestFolder::Read(std::filesystem::path(GANTRY_EQUIPMENT_GOLDEN) / golden));
}

TEST(EquipmentFile, IsTheGoldenFileToTheByte) {
  ExpectWritten(Describe({"P<1>", "I2"}, false, kLocalComputer), "two_wells.xml");
  // What other drivers fill.
  EquipmentModel equipment = Describe({"I1"}, true, kLinuxCluster);
  CXmlModuleData& data = equipment.Modules[0].Data[0];
  data.System = "Grid";
  data.SystemType = "Cluster";
  CXmlEquipmentItem& item = data.Equipment[0];
  item.Children.Add(std::make_unique<CXmlEquipmentItem>()).Label = "below";
  item.Parents.Add(std::make_unique<CXmlEquipmentItem>()).Label = "above";
  ExpectWritten(equipment, "other_driver.xml");
}

TEST(EquipmentFile, HoldsTheWellsThatAreAskedFor) {
  for (const auto& [asked, given] : {std::pair<Names, Names>{{}, {"P<1>", "I1", "I2"}},
                                     {{"I2", "none", "P<1>"}, {"P<1>", "I2"}},
                                     {{"i1"}, {}}}) {
    Names labels;
    const EquipmentModel equipment = Describe(asked, true, kLocalComputer);
    for (const auto& item : equipment.Modules[0].Data[0].Equipment) {
      labels.push_back(item->Label);
    }
    EXPECT_EQ(labels, given);
  }
}

TEST(EquipmentFile, IsRefusedWhereNoFileCanBeMade) {
  const TestFolder folder;
  EXPECT_EQ(WriteEquipmentFile(EquipmentModel(), folder.Path().string()), 1);
  EXPECT_EQ(WriteEquipmentFile(EquipmentModel(), ""), 1);
}

}  // namespace
}  // namespace gantry::test
