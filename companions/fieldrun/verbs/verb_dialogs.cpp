// The module's dialogs, over the screen: fieldrun has no window of its own.

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include <fmt/format.h>

#include "case/case_data.h"
#include "fieldrun/case/case_writer.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/driver/dialog_parts.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/window.h"
#include "settings/link_settings.h"
#include "wells/static_well_data.h"

namespace gantry::fieldrun {
namespace {

/// A setting of the module and the key of the case file that holds it.
struct SettingKey {
  const char* field = nullptr;
  const char* key = nullptr;
  std::array<const char*, 2> words = {};  ///< of the values 0 and 1; none: the value as it is
  bool isText = false;
};
constexpr SettingKey kSettingKeys[] = {
    {"ConnectionMode", "connection", {"\"local\"", "\"cluster\""}},
    {"HeadNode", "head_node", {}, true},
    {"HeadNodePort", "head_node_port"},
    {"LinuxIXVersion", "cluster_version"},
    {"SimExeName", "executable", {}, true},
    {"FileName", "deck", {}, true},
    {"Parallel", "parallel"},
    {"IPRModel", "inflow_model", {"\"block\"", "\"drainage\""}},
    {"CloseUnconnectedWells", "close_unconnected_wells", {"false", "true"}},
    {"StdLogging", "standard_log", {"false", "true"}},
};

using Values = std::map<std::string, std::string>;

std::string TomlValue(const SettingKey& setting, const std::string& value) {
  if (setting.isText) return TomlText(value);
  return setting.words[0] != nullptr ? setting.words[value == "1" ? 1 : 0] : value;
}

Values ReadSettings(DriverModel& model) {
  Values values;
  for (const SettingKey& setting : kSettingKeys) {
    const std::string value = model.Get(fmt::format("Intersect.CaseDetails.{}", setting.field));
    values[setting.key] = TomlValue(setting, value);
  }
  return values;
}

/// What of `after` differs from `before`.
Values Changes(const Values& before, const Values& after) {
  Values changes;
  for (const auto& [key, value] : after) {
    if (before.at(key) != value) changes[key] = value;
  }
  return changes;
}

/// The control modes as a case file has them, by the module's numbers.
constexpr std::array<const char*, 4> kControlWords = {"\"rate\"", "\"combined\"", "\"liquid\"",
                                                      "\"gas\""};

/// Tells the module of the case's producers, as a loaded case does: without a simulator it knows no
/// well and keeps no choice for any. False when there are none, or more than a case can hold.
bool LoadProducers(DriverModel& model, const CaseModel& caseModel) {
  LinkSettings settings;
  StaticWellDataCollection wells;
  std::vector<std::string> componentNames;
  for (const WellSpec& spec : caseModel.wells) {
    if (!spec.IsProducer()) continue;
    StaticWellData& well = wells.Items.emplace_back();
    well.Name = spec.name;
    well.Connected = spec.connected;
    well.OpMode = spec.control;
  }
  std::string block(EXT_CASE_DATA_CAPACITY, '\0');
  const CaseDataOutcome outcome = WriteCaseData(block, {settings, wells, componentNames});
  if (wells.Items.empty() || outcome != CaseDataOutcome::kDone) return false;
  model.LoadCase(block, caseModel.file, true);
  return true;
}

/// The control mode that the dialog shows for all wells: the last producer's.
std::string ReadControl(DriverModel& model, const CaseModel& caseModel) {
  const auto isProducer = [](const WellSpec& well) { return well.IsProducer(); };
  const auto last = std::find_if(caseModel.wells.rbegin(), caseModel.wells.rend(), isProducer);
  const std::string mode =
      model.Get(fmt::format("Intersect.StaticWell[{{{}}}].OpMode", last->name));
  const size_t number =
      mode.size() == 1 ? static_cast<size_t>(mode[0] - '0') : kControlWords.size();
  return number < kControlWords.size() ? kControlWords[number] : mode;
}

/// `control` is for all producers; empty leaves them as they are.
void WriteBack(const CaseModel& caseModel, const Values& changes, const std::string& control) {
  if (changes.empty() && control.empty()) return;
  std::string text = ReadInputFile(caseModel.file);
  if (!control.empty()) text = WithControl(text, caseModel, control);
  if (!changes.empty()) text = WithSimulatorKeys(text, changes);
  WriteWhole(caseModel.file, text);
}

void RequireNone(const std::string& fault) {
  if (!fault.empty()) throw DriverFailure("The module can't open its dialogs: " + fault);
}

void* RequireScreen(const ModuleApi& api) {
  RequireNone(DialogFault(api));
  void* const screen = platform::ScreenWindow();
  if (screen == nullptr) throw DriverFailure("There is no display to show a dialog on");
  RequireNone(DialogTrialFault(api));
  return screen;
}

}  // namespace

void OpenConfiguration(const Session& session) {
  void* const screen = RequireScreen(session.api);
  if (session.trace != nullptr) session.trace->Begin("ExtConfigure", "window=screen");
  const int32_t result = session.api.ExtConfigure(screen);
  if (session.trace != nullptr) session.trace->End(result, "");
}

void OpenSettings(const Session& session) {
  void* const screen = RequireScreen(session.api);
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  const bool hasWells = session.options.blockFile.empty() && LoadProducers(model, caseModel);
  PrepareModel(model, caseModel, session.options);
  const Values before = ReadSettings(model);
  const std::string controlBefore = hasWells ? ReadControl(model, caseModel) : "";
  const bool isStart = model.OpenDialog(EXT_EDIT, screen);
  // "OK" keeps the settings too, although only "Start" counts as accepted.
  const Values changes = Changes(before, ReadSettings(model));
  // The dialog gives every well the mode that it shows, also where the user chose none: wells of
  // different modes keep them unless another was chosen.
  std::string control = hasWells ? ReadControl(model, caseModel) : "";
  if (control == controlBefore) control.clear();
  WriteBack(caseModel, changes, control);
  for (const auto& [key, value] : changes) fmt::print(UserOutput(), "{} = {}\n", key, value);
  if (!control.empty()) fmt::print(UserOutput(), "control = {}\n", control);
  if (isStart) {
    fmt::print(UserOutput(), "Start it with: fieldrun run {}\n", session.options.caseFile);
  }
}

void OpenExport(const Session& session) {
  void* const screen = RequireScreen(session.api);
  const CaseModel caseModel = ReadCaseOf(session.options);
  if (caseModel.simulator.storeFile.empty()) {
    caseModel.Fail(caseModel.simulator.line, "[simulator] has no store_file for the variables");
  }
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  model.Do("Intersect.StartIX()");  // which tells the wells that there are
  if (!model.OpenDialog(EXT_EDIT_PUBLISHED_VARIABLES, screen)) return;
  model.SaveCase();
  for (const PublishedVariable& variable : model.PublishedVariables()) {
    fmt::print(UserOutput(), "{}\n", variable.fullName);
  }
}

}  // namespace gantry::fieldrun
