#include "ui/dialogs.h"

#include "model/ext_model.h"
#include "platform/window.h"
#include "settings/gantry_app.h"
#include "ui/case_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/export_variables_dlg.h"

namespace gantry {
namespace {

class ModelCase : public EditedCase {
 public:
  explicit ModelCase(CExtModel& model) : model_(model) {}

  LinkSettings& Settings() override { return model_.Settings; }
  StaticWellDataCollection& Wells() override { return model_.Wells; }
  bool IsRunning() override { return model_.IsRunning(); }
  int32_t CloseSimulator() override { return model_.CloseSimulator(); }
  void SetUpInflow(void* window) override { model_.SetUpInflow(window); }

 private:
  CExtModel& model_;
};

Dialogs* AvailableDialogs() {
  platform::DialogToolkit* const toolkit = platform::DialogToolkit::Find();
  if (toolkit == nullptr) return nullptr;
  static Dialogs dialogs(*toolkit);
  return &dialogs;
}

}  // namespace

Dialogs* DialogsFor(void* parent) {
  return platform::IsWindow(parent) ? AvailableDialogs() : nullptr;
}

void Dialogs::Configure(void* parent) {
  CConfigureDlg dialog(CGantryApp::Instance().Config);
  toolkit_.Run(dialog, parent);
}

bool Dialogs::EditCase(void* parent, CExtModel& model) {
  ModelCase edited(model);
  CCaseSettingsDlg dialog(edited, CGantryApp::Instance().Config);
  toolkit_.Run(dialog, parent);
  return dialog.StartRequested();
}

bool Dialogs::EditExportedVariables(void* parent, CExtModel& model) {
  CExportVariablesDlg dialog(model.ExportedVariables, model.Wells, !model.ComponentNames.empty(),
                             CGantryApp::Instance().Config);
  return toolkit_.Run(dialog, parent) == platform::kOkButton;
}

void Dialogs::DrawIcon(void* window, void* deviceContext) {
  toolkit_.Draw(platform::kSimulatorPicture, window, deviceContext);
}

}  // namespace gantry
