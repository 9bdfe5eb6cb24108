#include "ui/dialog_templates.h"

#include "toolkit/dialog_window.h"

namespace gantry {

using namespace platform;
using enum ControlKind;

// clang-format off
namespace {

constexpr ControlRow kConfigureControls[] = {
    {kGroup, kNoControl, "Default local (Windows) executable paths", {7, 7, 346, 103}},
    {kLabel, kNoControl, "Intersect", {16, 24, 44, 8}},
    {kEdit, configure_id::kSimExecutable, "", {62, 22, 260, 13}, kPlainStyle,
               "Default simulator executable for local use."},
    {kButton, configure_id::kBrowseSimulator, ". . .", {325, 22, 20, 13}},
    {kLabel, kNoControl, "mpiexec", {16, 41, 44, 8}},
    {kEdit, configure_id::kMPIExecutable, "", {62, 39, 260, 13}, kPlainStyle,
               "Default mpiexec executable for local use with parallel runs."},
    {kButton, configure_id::kBrowseMpi, ". . .", {325, 39, 20, 13}},
    {kLabel, kNoControl,
               "Addional command line arguments to ix.exe (e.g. --use-sim-ul)", {16, 58, 328, 8}},
    {kEdit, configure_id::kCmdLine, "", {16, 69, 329, 13}},
    {kLabel, kNoControl, "Communication port range", {16, 90, 104, 8}},
    {kEdit, configure_id::kStartPort, "", {122, 88, 40, 13}},
    {kLabel, kNoControl, "to", {168, 90, 12, 8}},
    {kEdit, configure_id::kEndPort, "", {182, 88, 40, 13}},
    {kGroup, kNoControl, "Additional exposed properties", {7, 115, 346, 126}},
    {kListView, configure_id::kProperties, "", {16, 130, 329, 84}},
    {kButton, configure_id::kDelete, "Delete", {16, 220, 50, 14}},
    {kButton, configure_id::kAdd, "Add", {70, 220, 50, 14}},
    {kButton, kOkButton, "OK", {195, 248, 50, 14}, kDefaultButton},
    {kButton, kCancelButton, "Cancel", {249, 248, 50, 14}},
    {kButton, configure_id::kHelp, "Help", {303, 248, 50, 14}},
};

constexpr ControlRow kAddPropertyControls[] = {
    {kLabel, kNoControl, "IX well property", {7, 7, 230, 8}},
    {kEdit, add_property_id::kProperty, "", {7, 17, 236, 13}},
    {kLabel, kNoControl, "Display name", {7, 36, 230, 8}},
    {kEdit, add_property_id::kDisplayName, "", {7, 46, 236, 13}},
    {kLabel, kNoControl, "IX unit", {7, 68, 28, 8}},
    {kDropList, add_property_id::kUnit, "", {38, 66, 92, 13}},
    {kLabel, kNoControl, "Type", {138, 68, 20, 8}},
    {kDropList, add_property_id::kType, "", {160, 66, 83, 13}},
    {kButton, kOkButton, "OK", {139, 88, 50, 14}, kDefaultButton},
    {kButton, kCancelButton, "Cancel", {193, 88, 50, 14}},
};

constexpr ControlRow kAdvancedControls[] = {
    {kCheckBox, advanced_id::kStdLogging,
               "Output standard log file (.ecreplay) to data directory", {7, 9, 246, 10}},
    {kButton, kOkButton, "OK", {149, 31, 50, 14}, kDefaultButton},
    {kButton, kCancelButton, "Cancel", {203, 31, 50, 14}},
};

constexpr ControlRow kCaseSettingsControls[] = {
    {kLabel, kNoControl, "Computer", {7, 9, 60, 8}},
    {kDropList, case_settings_id::kComputer, "", {90, 7, 110, 13}},
    {kButton, case_settings_id::kConfiguration, "Configuration", {263, 7, 60, 14}},
    {kGroup, kNoControl, "Linux settings", {7, 26, 316, 52}},
    {kLabel, kNoControl, "Head node  ", {16, 42, 60, 8}},
    {kEdit, case_settings_id::kHeadNode, "", {90, 40, 138, 13}, kPlainStyle,
               "The location of a running cluster daemon."},
    {kLabel, kNoControl, "Port  ", {236, 42, 24, 8}, kRightLabel},
    {kEdit, case_settings_id::kHeadNodePort, "", {263, 40, 51, 13}, kDigitsOnly},
    {kLabel, kNoControl, "IX API version  ", {16, 60, 70, 8}},
    {kDropList, case_settings_id::kLinuxVersion, "", {90, 58, 90, 13}},
    {kLabel, kNoControl, "Intersect executable", {7, 88, 81, 8}},
    {kEdit, case_settings_id::kSimExeName, "", {90, 86, 210, 13}, kPlainStyle,
               "CMG simulator, locatable by target computer."},
    {kButton, case_settings_id::kBrowseSimulator, "...", {303, 86, 20, 13}},
    {kLabel, case_settings_id::kDefaultSimulator, "", {90, 102, 233, 8}, kPathLabel},
    {kLabel, kNoControl, "Dataset", {7, 117, 81, 8}},
    {kEdit, case_settings_id::kFileName, "", {90, 115, 210, 13}, kPlainStyle,
               "Dataset, locatable by target computer."},
    {kButton, case_settings_id::kBrowseDataset, "...", {303, 115, 20, 13}},
    {kLabel, kNoControl, "Parallel processors (1 - serial run)", {7, 136, 138, 8}},
    {kEdit, case_settings_id::kParallel, "", {148, 134, 36, 13}},
    {kGroup, kNoControl, "Well control", {7, 152, 316, 86}},
    {kLabel, kNoControl, "IPR model", {16, 168, 106, 8}},
    {kDropList, case_settings_id::kIPRModel, "", {124, 166, 126, 13}},
    {kButton, case_settings_id::kCalculate, "Calculate", {259, 166, 55, 14}},
    {kLabel, kNoControl, "Control mode", {16, 186, 106, 8}},
    {kDropList, case_settings_id::kControlMode, "", {124, 184, 126, 13}},
    {kCheckBox, case_settings_id::kCloseUnconnected, "Close unconnected wells",
               {124, 203, 126, 10}, kPlainStyle,
               "Any wells that are not connected in the Tessel schematic will be closed"},
    {kLabel, kNoControl, "Well downtime (efficiency)", {16, 220, 106, 8}},
    {kDropList, case_settings_id::kDowntime, "", {124, 218, 126, 13}},
    {kButton, case_settings_id::kStartStop, "Start", {7, 245, 50, 14}, kPlainStyle,
               "Start/Stop initialization of the reservoir model."},
    {kButton, case_settings_id::kAdvanced, "Advanced", {61, 245, 50, 14}},
    {kButton, kOkButton, "OK", {165, 245, 50, 14}, kDefaultButton,
               "Save the current settings."},
    {kButton, kCancelButton, "Cancel", {219, 245, 50, 14}},
    {kButton, case_settings_id::kHelp, "Help", {273, 245, 50, 14}},
};

// The check box stands above the tree: it keeps to the top and right edges. All of it has room on a
// display of 1024 x 768 at 144 dots to the inch, beside the taskbar.
constexpr ControlRow kExportVariablesControls[] = {
    {kLabel, kNoControl, "Wells", {7, 7, 60, 8}},
    {kListBox, export_id::kWells, "", {7, 18, 60, 174}},
    {kButton, export_id::kAllWells, "All", {7, 196, 28, 14}},
    {kButton, export_id::kInvertWells, "Invert", {39, 196, 28, 14}},
    {kLabel, kNoControl, "Properties", {71, 7, 100, 8}},
    {kListBox, export_id::kProperties, "", {71, 18, 106, 174}},
    {kButton, export_id::kAllProperties, "All", {71, 196, 51, 14}},
    {kButton, export_id::kInvertProperties, "Invert", {126, 196, 51, 14}},
    {kButton, export_id::kAdd, "Add ->", {181, 95, 32, 14}},
    {kLabel, kNoControl, "Variables", {217, 7, 100, 8}},
    {kCheckBox, export_id::kSameName, "Select all properties with this name",
               {217, 18, 142, 10}},
    {kTree, export_id::kVariables, "", {217, 31, 142, 161}},
    {kButton, export_id::kDelete, "Delete", {217, 196, 35, 14}},
    {kButton, export_id::kCollapseAll, "Collapse all", {256, 196, 53, 14}},
    {kButton, export_id::kExpandAll, "Expand all", {313, 196, 46, 14}},
    {kButton, kOkButton, "OK", {255, 218, 50, 14}, kDefaultButton},
    {kButton, kCancelButton, "Cancel", {309, 218, 50, 14}},
};

}  // namespace

const DialogTemplate kConfigureTemplate = {1059, "Configure", 360, 269, kConfigureControls};
const DialogTemplate kAddPropertyTemplate = {1077, "Add property", 250, 109, kAddPropertyControls};
const DialogTemplate kAdvancedTemplate = {1081, "Advanced settings", 260, 52, kAdvancedControls};
const DialogTemplate kCaseSettingsTemplate = {1003, "Intersect Case Settings", 330, 266,
                                              kCaseSettingsControls};
const DialogTemplate kExportVariablesTemplate = {1074, "Export variables", 366, 239,
                                                 kExportVariablesControls, true};
// clang-format on

}  // namespace gantry
