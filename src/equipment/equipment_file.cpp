#include "equipment/equipment_file.h"

#include "equipment/equipment_model.h"
#include "equipment/xml_document.h"
#include "text/pieces.h"

namespace gantry {
namespace {

constexpr const char* kInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
constexpr const char* kFormatVersion = "1.0.0";

void AddRelatives(CXMLElement& parent, const char* listName, const char* itemName,
                  const CExtCollection<CXmlEquipmentItem>& relatives) {
  CXMLElement& list = parent.AddElement(listName);
  for (const auto& relative : relatives) {
    CXMLElement& element = list.AddElement(itemName);
    element.AddElement("Label", relative->Label);
    element.AddElement("Type", relative->Type);
  }
}

void AddVariable(CXMLElement& list, const CXmlEquipmentVariable& variable) {
  CXMLElement& element = list.AddElement("VariableItem");
  element.AddElement("Label", variable.Label);
  element.AddElement("Unit", variable.Unit);
  element.AddElement("Writeable", variable.Writeable);
  for (const auto& tag : variable.Tags) {
    CXMLElement& quillon = element.AddElement("Quillon");
    quillon.AddElement("Tag", tag->Tag);
    quillon.AddElement("Qualifier", tag->Qualifier);
  }
}

void AddItem(CXMLElement& list, const CXmlEquipmentItem& item) {
  CXMLElement& element = list.AddElement("EquipmentItem");
  element.AddElement("Label", item.Label);
  element.AddElement("Type", item.Type);
  element.AddElement("SubType", item.SubType);
  AddRelatives(element, "Children", "Child", item.Children);
  AddRelatives(element, "Parents", "Parent", item.Parents);
  CXMLElement& variables = element.AddElement("Variables");
  for (const auto& variable : item.Variables) AddVariable(variables, *variable);
}

void AddData(CXMLElement& list, const CXmlModuleData& data) {
  CXMLElement& element = list.AddElement("ModuleDataItem");
  element.AddElement("Alias", data.Alias);
  element.AddElement("Application", data.Application);
  element.AddElement("IsLocal", data.IsLocal);
  element.AddElement("Description", data.Description);
  element.AddElement("Share", data.Share);
  element.AddElement("UniqueId", data.UniqueId);
  CXMLElement& system = element.AddElement("System", data.System);
  if (!IsBlank(data.SystemType)) system.AddAttribute("SystemType", data.SystemType);
  CXMLElement& equipment = element.AddElement("Equipment");
  for (const auto& item : data.Equipment) AddItem(equipment, *item);
}

void AddModule(CXMLElement& list, const CXmlModule& module) {
  CXMLElement& element = list.AddElement("ModuleItem");
  element.AddElement("Filename", module.Filename);
  CXMLElement& data = element.AddElement("Data");
  for (const auto& item : module.Data) AddData(data, *item);
}

void AddModel(CXMLDocument& document, const EquipmentModel& equipment) {
  CXMLElement& model = document.AddElement("Model");
  model.AddAttribute("xmlns:xsi", kInstanceNamespace);
  model.AddAttribute("xmlns:xsd", kSchemaNamespace);
  model.AddAttribute("version", kFormatVersion);
  model.AddElement("Filename", equipment.Filename);
  CXMLElement& modules = model.AddElement("Modules");
  for (const auto& module : equipment.Modules) AddModule(modules, *module);
}

}  // namespace

int32_t WriteEquipmentFile(const EquipmentModel& equipment, const std::string& path) {
  CXMLDocument document;
  AddModel(document, equipment);
  std::string error;
  document.SaveToFile(path, error);
  return error.empty() ? 0 : 1;
}

}  // namespace gantry
