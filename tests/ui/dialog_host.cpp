// A host that opens one dialog over a window and tells what the model holds afterwards.
//
//     dialog_host configure|add|advanced|case|export WINDOW [NAME=VALUE...]
//
// WINDOW is the number of a window; 0 is the desktop. Names: wells, variables, components, running,
// simulator, dataset, computer, properties.

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

#include "host/text/number_text.h"
#include "platform/dialog_window.h"
#include "settings/gantry_app.h"
#include "ui/add_property_dlg.h"
#include "ui/advanced_settings_dlg.h"
#include "ui/case_settings_dlg.h"
#include "ui/configure_dlg.h"
#include "ui/export_variables_dlg.h"
#include "ui/stopped_case.h"

namespace gantry {
namespace {

using Arguments = std::map<std::string, std::string>;

/// A case without a simulator process: it runs while it is told so.
struct HeldCase : test::StoppedCase {
  bool IsRunning() override { return isRunning; }
  int32_t CloseSimulator() override {
    isRunning = false;
    return 0;
  }
  void SetUpInflow(void* window) override { std::printf("set up %d\n", window != nullptr); }

  bool isRunning = false;
};

void Fill(Arguments& arguments, HeldCase& held, CIXConfig& config) {
  held.isRunning = !arguments["running"].empty();
  held.settings.FileName = arguments["dataset"];
  held.settings.ConnectionMode = ReadInteger(arguments["computer"]);
  config.SimExecutable = arguments["simulator"];
  config.UserProperties.clear();
  for (int32_t i = 0; i < ReadInteger(arguments["properties"]); ++i) {
    auto property = std::make_unique<CIXUserProperty>();
    property->Property = "PROPERTY_" + std::to_string(i + 1);
    property->DisplayName = "Property " + std::to_string(i + 1);
    property->UnitFamily = i % 14 - 1;
    property->IsScalar = i % 3 == 2 ? 0 : 1;
    config.UserProperties.push_back(std::move(property));
  }
  for (int32_t i = 0; i < ReadInteger(arguments["wells"]); ++i) {
    held.wells.Items.emplace_back().Name = "WELL-" + std::to_string(i + 1);
  }
}

void Print(const CIXConfig& config) {
  std::printf("simulator=%s\nmpi=%s\ncommand=%s\nports=%d-%d\n", config.SimExecutable.c_str(),
              config.MPIExecutable.c_str(), config.CmdLine.c_str(), config.StartPort,
              config.EndPort);
  for (const auto& property : config.UserProperties) {
    std::printf("property=%s|%s|%d|%d\n", property->Property.c_str(), property->DisplayName.c_str(),
                property->UnitFamily, property->IsScalar);
  }
}

void Print(const LinkSettings& settings) {
  std::printf("computer=%d\nhead=%s:%d\nexecutable=%s\ndataset=%s\nparallel=%d\ninflow=%d\n",
              settings.ConnectionMode, settings.HeadNode.c_str(), settings.HeadNodePort,
              settings.SimExeName.c_str(), settings.FileName.c_str(), settings.Parallel,
              settings.IPRModel);
}

void Print(const CExportedVariables& variables) {
  size_t count = 0;
  for (const auto& parent : variables) count += parent->Variables.Size();
  std::printf("wells=%zu\nvariables=%zu\n", variables.Size(), count);
}

int RunOne(const std::string& name, void* window, Arguments& arguments) {
  CGantryApp app;
  HeldCase held;
  Fill(arguments, held, app.Config);
  platform::DialogToolkit* const toolkit = platform::DialogToolkit::Find();
  if (toolkit == nullptr) {
    std::printf("no dialogs\n");
    return 3;
  }
  CExportedVariables exported;
  CConfigureDlg configure(app.Config);
  CAddProperty add(app.Config);
  CIXAdvancedSettings advanced(held.settings);
  CCaseSettingsDlg caseSettings(held, app.Config);
  CExportVariablesDlg exportVariables(exported, held.wells, !arguments["components"].empty(),
                                      app.Config);
  const std::map<std::string, platform::DialogHandler*> dialogs = {{"configure", &configure},
                                                                   {"add", &add},
                                                                   {"advanced", &advanced},
                                                                   {"case", &caseSettings},
                                                                   {"export", &exportVariables}};
  const int result = toolkit->Run(*dialogs.at(name), window);
  std::printf("result=%d\nstart=%d\nlogging=%d\n", result, caseSettings.StartRequested(),
              held.settings.StdLogging);
  Print(app.Config);
  Print(held.settings);
  Print(exported);
  return 0;
}

}  // namespace
}  // namespace gantry

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  gantry::Arguments arguments;
  for (int i = 3; i < argc; ++i) {
    const std::string argument = argv[i];
    const size_t equals = std::min(argument.find('='), argument.size());
    arguments[argument.substr(0, equals)] = argument.substr(std::min(equals + 1, argument.size()));
  }
  return gantry::RunOne(argv[1], reinterpret_cast<void*>(std::strtoull(argv[2], nullptr, 0)),
                        arguments);
}
