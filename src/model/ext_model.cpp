// The model's lifecycle, its case and its dialogs.

#include "model/ext_model.h"

#include "equipment/equipment_model.h"
#include "model/model_failure.h"

namespace gantry {

CExtModel::CExtModel(DialogsOver dialogsOver)
    : dialogsOver_(dialogsOver), inflow_(this, kInflowCallbacks) {}

CExtModel::~CExtModel() { run_.Stop(); }

int32_t CExtModel::CloseSimulator() {
  run_.Stop();
  return 0;
}

int32_t CExtModel::StopSimulator(ExtErrorBlock* err) {
  return CloseSimulator() > 0 ? Fail(err, "Failed to stop simulator") : 0;
}

int32_t CExtModel::ImportComposition(void* /*window*/, void* /*data*/, bool /*flag*/,
                                     ExtErrorBlock* err) {
  return Fail(err, "Compositional import from IX not supported yet");
}

int32_t CExtModel::LoadCaseData(const CaseDataRecord* record, ExtErrorBlock* err) {
  if (case_.Load(*record, err) != 0) return 1;
  skipNextStart_ = true;
  return 0;
}

int32_t CExtModel::GetEquipmentXml(EquipmentModel& equipment, bool withoutVariables,
                                   const std::vector<std::string>& names) {
  FillEquipment(equipment, case_.Settings, InstanceLabel, case_.Wells, withoutVariables, names);
  return 0;
}

int32_t CExtModel::Edit(void* window, uint32_t* changed, ExtErrorBlock* err) {
  if (changed != nullptr) *changed = 0;
  ModelDialogs* const dialogs = dialogsOver_(window);
  if (dialogs == nullptr) {
    return Fail(err, "Edit command failed due to bad parent window handle.");
  }
  LinkSettings& settings = case_.Settings;
  if (settings.SimExeName.empty() && settings.FileName.empty()) settings.LoadFromRegistry();
  if (!dialogs->EditCase(window, *this)) return -1;
  skipNextStart_ = false;
  if (changed != nullptr) *changed = 1;
  return 0;
}

int32_t CExtModel::EditPublishedVariables(void* window, ExtErrorBlock* /*err*/) {
  ModelDialogs* const dialogs = dialogsOver_(window);
  if (dialogs == nullptr) return 1;
  const bool hasComponents = !case_.ComponentNames.empty();
  return dialogs->EditExportedVariables(window, published_.List, case_.Wells, hasComponents) ? 0
                                                                                             : 1;
}

int32_t CExtModel::DrawIcon(void* window, void* deviceContext) {
  if (window == nullptr || deviceContext == nullptr) return 1;
  if (ModelDialogs* const dialogs = dialogsOver_(window)) dialogs->DrawIcon(window, deviceContext);
  return 1;
}

}  // namespace gantry
