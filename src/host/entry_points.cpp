#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "boundary/error_text.h"
#include "boundary/ext_interface.h"
#include "equipment/equipment_file.h"
#include "equipment/equipment_model.h"
#include "gantry/boundary.h"
#include "host/command_table.h"
#include "host/unit_table.h"
#include "model/ext_model.h"
#include "platform/module_state.h"
#include "settings/gantry_app.h"
#include "ui/dialogs.h"

using namespace gantry;
using platform::ModuleStateScope;

namespace {

CExtInterface* AsModel(void* handle) { return static_cast<CExtInterface*>(handle); }

int32_t Missing(const char* what, ExtErrorBlock* err) {
  SetErrorText(err, FormatText("The call came without a %s", what));
  return 1;
}

std::vector<std::string> CopyNames(const char* const* names) {
  std::vector<std::string> copy;
  for (; names != nullptr && *names != nullptr; ++names) copy.emplace_back(*names);
  return copy;
}

void FillIdentity(ExtIdentifyRecord& record) {
  record.interfaceNumber = 70;
  CopyBounded(record.name, "Intersect");
  record.moduleKind = 4;
  record.capability1 = 1;
  record.capability2 = 1;
  CopyBounded(record.description, "Intersect simulator");
  record.capability3 = 1;
  record.capability4 = 1;
  record.capability5 = 1;
  record.capability6 = 1;
  record.capability7 = 0;
}

}  // namespace

BrindleShowDataServerString GlpfnBrindleShowDataServerString = nullptr;

int32_t ExtIdentify(void* identityRecord, ExtErrorBlock* err) {
  const ModuleStateScope state;
  ClearErrorBlock(err);
  if (identityRecord == nullptr) return Missing("record", err);
  FillIdentity(*static_cast<ExtIdentifyRecord*>(identityRecord));
  return 0;
}

int32_t ExtCreateInstance(void** outModel, ExtErrorBlock* err) {
  const ModuleStateScope state;
  ClearErrorBlock(err);
  if (outModel == nullptr) return Missing("place for the model", err);
  *outModel = nullptr;
  try {
    CExtInterface* model =
        new CExtModel(ModelDialogsFor);  // the host owns it until ExtDestroyInstance
    *outModel = model;
  } catch (const std::exception&) {
    // No failure is reported: the null tells the host.
  }
  return 0;
}

int32_t ExtDestroyInstance(void* model, ExtErrorBlock* err) {
  const ModuleStateScope state;
  ClearErrorBlock(err);
  delete AsModel(model);
  return 0;
}

int32_t ExtCmd(void* model, void* window, uint32_t command, void* data, uint32_t value,
               ExtErrorBlock* err) {
  const ModuleStateScope state;
  ClearErrorBlock(err);
  return RunCommand(command, AsModel(model),
                    {.window = window, .data = data, .value = value, .err = err});
}

int32_t ExtConfigure(void* parentWindow) {
  const ModuleStateScope state;
  if (Dialogs* dialogs = DialogsFor(parentWindow)) dialogs->Configure(parentWindow);
  return 0;
}

void ExtCopyConfigure(void* rootKey, const char* baseKeyPath) {
  const ModuleStateScope state;
  if (baseKeyPath == nullptr) return;
  CIXConfig& config = CGantryApp::Instance().Config;
  config.Load(reinterpret_cast<uintptr_t>(rootKey), std::string(baseKeyPath) + "\\Intersect");
  config.Save();
}

void ExtHelp(void) { const ModuleStateScope state; }

int32_t ExtConnectToApp(void* model, uint32_t first, uint32_t second, ExtErrorBlock* err) {
  const ModuleStateScope state;
  if (model == nullptr) return Missing("model", err);
  return AsModel(model)->ConnectToApplication(first, second, err);
}

int32_t ExtStartApp(void* model, uint32_t value, ExtErrorBlock* err) {
  const ModuleStateScope state;
  if (model == nullptr) return Missing("model", err);
  return AsModel(model)->StartApplication(value, err);
}

int32_t ExtStopApp(void* model) {
  const ModuleStateScope state;
  return model == nullptr ? 0 : AsModel(model)->StopApplication();
}

int32_t ExtEquipXml(void* model, const char* path, uint32_t flag, const char* const* names) {
  const ModuleStateScope state;
  if (model == nullptr || path == nullptr) return 1;
  EquipmentModel equipment;
  if (AsModel(model)->GetEquipmentXml(equipment, flag != 0, CopyNames(names)) != 0) return 1;
  return WriteEquipmentFile(equipment, path);
}

int32_t ExtCreateUnit(int32_t index, void* unitRecord) {
  constexpr auto rows = static_cast<int32_t>(HostUnitTable.size());
  if (index >= rows || unitRecord == nullptr) return 0;
  // Only the top end refuses: an index below the table stands for its first row.
  const HostUnit& unit = HostUnitTable[static_cast<size_t>(index < 0 ? 0 : index)];
  auto& record = *static_cast<ExtUnitRecord*>(unitRecord);
  std::memset(record.name, 0, sizeof record.name);
  CopyBounded(record.name, unit.name);
  record.code = unit.code;
  record.unitClass = unit.unitClass;
  record.third = 0;
  return 1;
}
