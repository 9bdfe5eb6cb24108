// A host that shows one dialog over the screen, as the documentation's pictures have it.
//
//     dialog_host configure|add-property|advanced|case-local|case-cluster|case-running|export

#include <map>
#include <memory>
#include <string>

#include "platform/dialog_window.h"
#include "platform/window.h"
#include "settings/gantry_app.h"
#include "settings/well_variable_catalogue.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/export_variables_dlg.h"
#include "ui/stub_case.h"

namespace gantry {
namespace {

void Fill(CIXConfig& config) {
  config.SimExecutable = "/opt/simulator/bin/ix.exe";
  config.UserProperties.clear();
  for (const auto& [name, display, family] :
       {std::tuple{"SALT_RATE", "Salt rate", -1}, {"DEPTH_BHP_REF", "Reference depth", 2}}) {
    auto property = std::make_unique<CIXUserProperty>();
    property->Property = name;
    property->DisplayName = display;
    property->UnitFamily = family;
    config.UserProperties.push_back(std::move(property));
  }
}

void Fill(test::StubCase& edited, const std::string& name) {
  edited.settings.FileName = "/cases/north/NORTH.afi";
  edited.settings.ConnectionMode = name == "case-cluster" ? 1 : 0;
  edited.isRunning = name == "case-running";
  for (int i = 1; i <= 12; ++i) edited.wells.Items.emplace_back().Name = "P-" + std::to_string(i);
}

void Fill(CExportedVariables& exported) {
  for (int i = 1; i <= 3; ++i) {
    auto parent = std::make_unique<CExportedVariableWellParent>();
    parent->WellName = "P-" + std::to_string(i);
    for (const size_t row : {18u, 20u, 21u}) {
      parent->Variables.Add(std::make_unique<CExportedVariable>(WellVariableCatalogue.at(row)));
    }
    exported.Add(std::move(parent));
  }
}

int Show(const std::string& name) {
  CGantryApp app;
  Fill(app.Config);
  test::StubCase edited;
  Fill(edited, name);
  CExportedVariables exported;
  Fill(exported);
  CConfigureDlg configure(app.Config);
  CAddProperty add(app.Config);
  CIXAdvancedSettings advanced(edited.settings);
  CCaseSettingsDlg settings(edited, app.Config);
  CExportVariablesDlg variables(exported, edited.wells, true, app.Config);
  const std::map<std::string, platform::DialogHandler*> dialogs = {
      {"configure", &configure}, {"add-property", &add},      {"advanced", &advanced},
      {"case-local", &settings}, {"case-cluster", &settings}, {"case-running", &settings},
      {"export", &variables}};
  platform::DialogToolkit* const toolkit = platform::DialogToolkit::Find();
  const auto dialog = dialogs.find(name);
  if (toolkit == nullptr || dialog == dialogs.end()) return 2;
  toolkit->Run(*dialog->second, platform::ScreenWindow());
  return 0;
}

}  // namespace
}  // namespace gantry

int main(int argc, char** argv) { return argc == 2 ? gantry::Show(argv[1]) : 2; }
