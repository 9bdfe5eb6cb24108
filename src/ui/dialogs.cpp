#include "ui/dialogs.h"

#include "platform/window.h"
#include "settings/gantry_app.h"
#include "ui/case_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/export_variables_dlg.h"

namespace gantry {
namespace {

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

bool Dialogs::EditCase(void* parent, EditedCase& edited) {
  CCaseSettingsDlg dialog(edited, CGantryApp::Instance().Config);
  toolkit_.Run(dialog, parent);
  return dialog.StartRequested();
}

bool Dialogs::EditExportedVariables(void* parent, CExportedVariables& variables,
                                    const StaticWellDataCollection& wells, bool hasComponents) {
  CExportVariablesDlg dialog(variables, wells, hasComponents, CGantryApp::Instance().Config);
  return toolkit_.Run(dialog, parent) == platform::kOkButton;
}

void Dialogs::DrawIcon(void* window, void* deviceContext) {
  toolkit_.Draw(platform::kSimulatorPicture, window, deviceContext);
}

}  // namespace gantry
