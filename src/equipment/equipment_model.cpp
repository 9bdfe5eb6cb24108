#include "equipment/equipment_model.h"

#include <array>
#include <memory>

#include "client/name_index.h"
#include "settings/link_settings.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry {
namespace {

struct VariableRow {
  const char* label;
  const char* property;
  const char* unit;
};

constexpr std::array<VariableRow, 8> kWellVariables = {{{"Name", "Name", ""},
                                                        {"Gas rate", "CurGasRate", "MMscf/d"},
                                                        {"Oil rate", "CurOilRate", "STB/d"},
                                                        {"Water rate", "CurWaterRate", "STB/d"},
                                                        {"Pressure", "CurPressure", "psig"},
                                                        {"Oil gravity", "OilGravity", ""},
                                                        {"Gas gravity", "GasGravity", ""},
                                                        {"Water gravity", "WaterGravity", ""}}};

template <class T>
T& AddNew(CExtCollection<T>& items) {
  return items.Add(std::make_unique<T>());
}

void AddVariable(CXmlEquipmentItem& item, const VariableRow& row) {
  CXmlEquipmentVariable& variable = AddNew(item.Variables);
  variable.Label = row.label;
  variable.Unit = row.unit;
  // The word of the list in capitals: the host relies on this spelling.
  AddNew(variable.Tags).Tag = "WELL[{" + item.Label + "}]." + row.property;
}

void AddWell(CXmlModuleData& data, const StaticWellData& well, bool withoutVariables) {
  CXmlEquipmentItem& item = AddNew(data.Equipment);
  item.Label = well.Name;
  item.Type = "Well";
  item.SubType = well.SourceType == kProducer ? "Producer" : "Injector";
  if (withoutVariables) return;
  for (const VariableRow& row : kWellVariables) AddVariable(item, row);
}

}  // namespace

void FillEquipment(EquipmentModel& equipment, const LinkSettings& settings,
                   const std::string& label, const StaticWellDataCollection& wells,
                   bool withoutVariables, const std::vector<std::string>& names) {
  equipment.Filename = settings.FileName;
  CXmlModule& module = AddNew(equipment.Modules);
  module.Filename = settings.FileName;
  CXmlModuleData& data = AddNew(module.Data);
  data.Alias = label;
  data.Application = "Intersect";
  data.IsLocal = settings.ConnectionMode == kLocalComputer;
  data.Description = "Intersect simulation data file";

  const NameIndex selected(names);
  for (const StaticWellData& well : wells.Items) {
    if (names.empty() || selected.Find(well.Name)) AddWell(data, well, withoutVariables);
  }
}

}  // namespace gantry
