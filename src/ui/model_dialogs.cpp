// The model's operations that open a dialog.

#include "model/ext_model.h"
#include "model/model_failure.h"
#include "ui/dialogs.h"

namespace gantry {

int32_t CExtModel::Edit(void* window, uint32_t* changed, ExtErrorBlock* err) {
  if (changed != nullptr) *changed = 0;
  Dialogs* const dialogs = DialogsFor(window);
  if (dialogs == nullptr) {
    return Fail(err, "Edit command failed due to bad parent window handle.");
  }
  if (Settings.SimExeName.empty() && Settings.FileName.empty()) Settings.LoadFromRegistry();
  if (!dialogs->EditCase(window, *this)) return -1;
  SkipNextStart = false;
  if (changed != nullptr) *changed = 1;
  return 0;
}

int32_t CExtModel::EditPublishedVariables(void* window, ExtErrorBlock* /*err*/) {
  Dialogs* const dialogs = DialogsFor(window);
  return dialogs != nullptr && dialogs->EditExportedVariables(window, *this) ? 0 : 1;
}

void CExtModel::SetUpInflow(void* window) { Inflow->SetupIPR(window, InflowHandle); }

int32_t CExtModel::DrawIcon(void* window, void* deviceContext) {
  if (window == nullptr || deviceContext == nullptr) return 1;
  if (Dialogs* const dialogs = DialogsFor(window)) dialogs->DrawIcon(window, deviceContext);
  return 1;
}

}  // namespace gantry
