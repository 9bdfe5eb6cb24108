#pragma once

#include "toolkit/dialog_template.h"

// The dialogs as data, and the ids of the controls that their logic addresses. Ids and captions are
// the system's own, a misspelling included.

namespace gantry {

extern const platform::DialogTemplate kConfigureTemplate;
extern const platform::DialogTemplate kAddPropertyTemplate;
extern const platform::DialogTemplate kAdvancedTemplate;
extern const platform::DialogTemplate kCaseSettingsTemplate;
extern const platform::DialogTemplate kExportVariablesTemplate;

namespace configure_id {
enum : int {
  kHelp = 3,
  kDelete = 4,
  kAdd = 5,
  kSimExecutable = 1092,
  kBrowseSimulator = 1093,
  kMPIExecutable = 1094,
  kBrowseMpi = 1095,
  kCmdLine = 1096,
  kProperties = 1118,
  kStartPort = 1121,
  kEndPort = 1122
};
}  // namespace configure_id

namespace add_property_id {
enum : int { kUnit = 1099, kType = 1100, kProperty = 1119, kDisplayName = 1120 };
}  // namespace add_property_id

namespace advanced_id {
enum : int { kStdLogging = 1122 };
}  // namespace advanced_id

namespace case_settings_id {
enum : int {
  kHelp = 3,
  kAdvanced = 4,
  kSimExeName = 1000,
  kFileName = 1002,
  kStartStop = 1009,
  kCalculate = 1010,
  kConfiguration = 1011,
  kHeadNode = 1026,
  kHeadNodePort = 1027,
  kControlMode = 1070,
  kDowntime = 1071,
  kIPRModel = 1090,
  kBrowseDataset = 1093,
  kDefaultSimulator = 1094,
  kBrowseSimulator = 1095,
  kComputer = 1099,
  kCloseUnconnected = 1103,
  kParallel = 1104,
  kLinuxVersion = 1120
};
}  // namespace case_settings_id

namespace export_id {
enum : int {
  kAllWells = 1106,
  kWells = 1107,
  kProperties = 1108,
  kInvertWells = 1109,
  kAllProperties = 1110,
  kInvertProperties = 1111,
  kVariables = 1112,
  kAdd = 1113,
  kDelete = 1114,
  kCollapseAll = 1115,
  kExpandAll = 1116,
  kSameName = 1117
};
}  // namespace export_id

}  // namespace gantry
