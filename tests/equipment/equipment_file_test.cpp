#include "equipment/equipment_file.h"

#include <fstream>
#include <sstream>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include "equipment/equipment_model.h"
#include "settings/link_settings.h"
#include "support/test_folder.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

using boost::property_tree::ptree;
using Names = std::vector<std::string>;

/// As text, so that the platform's line ends are one character.
std::string ReadText(const std::filesystem::path& file) {
  return (std::ostringstream() << std::ifstream(file).rdbuf()).str();
}

EquipmentModel Describe(const Names& names, bool withoutVariables, int32_t connectionMode = 0) {
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

/// Writes the description and reads it with another library than the writer's own.
ptree WrittenAndRead(const EquipmentModel& equipment) {
  const TestFolder folder;
  const auto file = folder / "out.xml";
  EXPECT_EQ(WriteEquipmentFile(equipment, file.string()), 0);
  ptree tree;
  read_xml(file.string(), tree, boost::property_tree::xml_parser::trim_whitespace);
  return tree;
}

const ptree& DataOf(const ptree& tree) {
  return tree.get_child("Model.Modules.ModuleItem.Data.ModuleDataItem");
}

Names LabelsOf(const ptree& list) {
  Names labels;
  for (const auto& [name, item] : list) labels.push_back(item.get<std::string>("Label"));
  return labels;
}

TEST(EquipmentFile, IsTheGoldenFileToTheByte) {
  const TestFolder folder;
  const auto file = folder.Write("out.xml", std::string(100000, 'x'));
  EXPECT_EQ(WriteEquipmentFile(Describe({"P<1>", "I2"}, false), file.string()), 0);
  EXPECT_EQ(ReadText(file), ReadText(GANTRY_EQUIPMENT_GOLDEN "/two_wells.xml"));
}

TEST(EquipmentFile, HoldsTheWellsThatAreAskedFor) {
  for (const auto& [asked, given] : {std::pair<Names, Names>{{}, {"P<1>", "I1", "I2"}},
                                     {{"I1"}, {"I1"}},
                                     {{"I2", "none", "P<1>"}, {"P<1>", "I2"}},
                                     {{"i1"}, {}}}) {
    const ptree tree = WrittenAndRead(Describe(asked, true, 1));
    const ptree& data = DataOf(tree);
    EXPECT_EQ(data.get<std::string>("IsLocal"), "false");
    EXPECT_EQ(LabelsOf(data.get_child("Equipment")), given);
    for (const auto& [name, item] : data.get_child("Equipment")) {
      EXPECT_TRUE(item.get_child("Variables").empty());
    }
  }
}

TEST(EquipmentFile, CoversWhatOtherDriversFill) {
  EquipmentModel equipment = Describe({"I1"}, true);
  CXmlModuleData& data = equipment.Modules[0].Data[0];
  data.System = "Grid";
  data.SystemType = "Cluster";
  CXmlEquipmentItem& item = data.Equipment[0];
  item.Children.Add(std::make_unique<CXmlEquipmentItem>()).Label = "below";
  item.Parents.Add(std::make_unique<CXmlEquipmentItem>()).Label = "above";
  const ptree tree = WrittenAndRead(equipment);
  EXPECT_EQ(DataOf(tree).get<std::string>("System.<xmlattr>.SystemType"), "Cluster");
  const ptree& written = DataOf(tree).get_child("Equipment.EquipmentItem");
  EXPECT_EQ(written.get<std::string>("Children.Child.Label"), "below");
  EXPECT_EQ(written.get<std::string>("Parents.Parent.Label"), "above");

  data.SystemType = "  ";
  EXPECT_FALSE(DataOf(WrittenAndRead(equipment)).get_child("System").count("<xmlattr>"));
}

TEST(EquipmentFile, IsRefusedWhereNoFileCanBeMade) {
  const TestFolder folder;
  EXPECT_EQ(WriteEquipmentFile(EquipmentModel(), folder.Path().string()), 1);
  EXPECT_EQ(WriteEquipmentFile(EquipmentModel(), ""), 1);
}

}  // namespace
}  // namespace gantry::test
