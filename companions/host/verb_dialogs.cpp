// The module's dialogs, over the screen: fieldrun has no window of its own.

#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <string_view>

#include <fmt/format.h>

#include "host/case_writer.h"
#include "host/output_file.h"
#include "host/terminal.h"
#include "host/verbs.h"
#include "platform/window.h"

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

void WriteBack(const std::string& path, const Values& changes) {
  if (changes.empty()) return;
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  OutputFile output(path);
  output.Write(WithSimulatorKeys(text, changes));
  output.Finish();
}

void* RequireScreen() {
  void* const screen = platform::ScreenWindow();
  if (screen == nullptr) throw DriverFailure("There is no display to show a dialog on");
  return screen;
}

}  // namespace

void OpenConfiguration(const Session& session) {
  void* const screen = RequireScreen();
  if (session.trace != nullptr) session.trace->Begin("ExtConfigure", "window=screen");
  const int32_t result = session.api.ExtConfigure(screen);
  if (session.trace != nullptr) session.trace->End(result, "");
}

void OpenSettings(const Session& session) {
  void* const screen = RequireScreen();
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  const Values before = ReadSettings(model);
  const bool isStart = model.OpenDialog(kEdit, screen);
  // "OK" keeps the settings too, although only "Start" counts as accepted.
  const Values changes = Changes(before, ReadSettings(model));
  WriteBack(session.options.caseFile, changes);
  for (const auto& [key, value] : changes) fmt::print(UserOutput(), "{} = {}\n", key, value);
  if (isStart) {
    fmt::print(UserOutput(), "Start it with: fieldrun run {}\n", session.options.caseFile);
  }
}

void OpenExport(const Session& session) {
  void* const screen = RequireScreen();
  const CaseModel caseModel = ReadCaseOf(session.options);
  if (caseModel.simulator.storeFile.empty()) {
    throw CaseError(session.options.caseFile, 0, "[simulator] has no store_file for the variables");
  }
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  model.Do("Intersect.StartIX()");  // which tells the wells that there are
  if (!model.OpenDialog(kEditPublishedVariables, screen)) return;
  model.SaveCase();
  for (const PublishedVariable& variable : model.PublishedVariables()) {
    fmt::print(UserOutput(), "{}\n", variable.fullName);
  }
}

}  // namespace gantry::fieldrun
