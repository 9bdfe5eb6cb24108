#include <cmath>
#include <filesystem>
#include <memory>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/input_file.h"
#include "fieldrun/driver/module_values.h"
#include "fieldrun/driver/variable_choice.h"
#include "fieldrun/platform/terminal.h"
#include "fieldrun/results/output_file.h"
#include "fieldrun/run/simulator_start.h"
#include "fieldrun/run/start_watch.h"
#include "fieldrun/verbs/verbs.h"
#include "platform/file_path.h"
#include "text/number_text.h"

namespace gantry::fieldrun {
namespace {

void LoadInto(DriverModel& model, const std::string& path, bool keepDataset) {
  const std::string casePath = platform::NameOf(std::filesystem::absolute(platform::PathOf(path)));
  model.LoadCase(ReadInputFile(path), casePath, keepDataset);
}

void SaveIfAsked(DriverModel& model, const Options& options) {
  if (!options.saveFile.empty()) WriteWhole(options.saveFile, model.SaveCase());
}

std::pair<int, std::string> ParseWrite(const std::string& text) {
  const size_t equals = text.find('=');
  const auto handle = ParseNumber<int>(std::string_view(text).substr(0, equals));
  if (equals == std::string::npos || !handle) {
    throw CommandLineError("--write " + text + ": must be HANDLE=VALUE");
  }
  // The module would take the value 0 from any other text.
  const std::string value = text.substr(equals + 1);
  if (!std::isfinite(ParseNumber<double>(value).value_or(HUGE_VAL))) {
    throw CommandLineError("--write " + text + ": the value must be a number");
  }
  return {*handle, value};
}

/// Whether the state file holds the model's variables. The module tells nobody when it can't be
/// read or written.
bool HoldsVariables(const Session& session, DriverModel& model, const std::string& storeFile) {
  if (storeFile.empty()) return true;
  DriverModel reader(session.api, session.trace);
  reader.SetStoreFile(storeFile, true);
  return reader.PublishedVariables() == model.PublishedVariables();
}

void RequireStoreFile(const CaseModel& caseModel, bool isNeeded) {
  if (!isNeeded || !caseModel.simulator.storeFile.empty()) return;
  caseModel.Fail(caseModel.simulator.line,
                 "variables are kept in the case's store_file, and [simulator] names none");
}

void ListVariables(DriverModel& model, bool asJson) {
  std::vector<Json> rows;
  for (const PublishedVariable& variable : model.PublishedVariables()) {
    rows.push_back({{"handle", variable.handle},
                    {"name", variable.fullName},
                    {"well", variable.wellName},
                    {"code", variable.code},
                    {"writeable", variable.isWriteable}});
  }
  Print(rows, asJson);
}

void PrintValues(const std::vector<std::pair<std::string, std::string>>& values, bool asJson) {
  Json object = Json::object();
  for (const auto& [path, value] : values) {
    if (!asJson) fmt::print(UserOutput(), "{}\n", value);
    object[path] = value;
  }
  if (asJson) fmt::print(UserOutput(), "{}", JsonText(object, 2));
}

}  // namespace

void PrepareModel(DriverModel& model, const CaseModel& caseModel, const Options& options) {
  model.SetLabel(caseModel.general.title);
  model.SetStoreFile(caseModel.simulator.storeFile, true);
  if (options.blockFile.empty()) {
    ApplySettings(model, caseModel, DefaultSimulator());
  } else {
    LoadInto(model, options.blockFile, false);
    if (!options.simulator.empty()) {
      model.Set("Intersect.CaseDetails.SimExeName", options.simulator);
    }
  }
  if (!options.start) return;
  const StartWatch watch;
  model.Do("Intersect.StartIX()");
}

void GetProperties(const Session& session) {
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  std::vector<std::pair<std::string, std::string>> values;
  std::vector<std::string> failures;
  for (const std::string& path : session.options.paths) {
    try {
      values.emplace_back(path, model.Get(path));
    } catch (const DriverFailure& failure) {
      failures.emplace_back(failure.what());
    }
  }
  PrintValues(values, session.options.json);
  if (!failures.empty()) throw DriverFailure(fmt::format("{}", fmt::join(failures, "\n")));
}

void SetOneProperty(const Session& session) {
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  SetProperty(model, session.options.path, session.options.value);
  SaveIfAsked(model, session.options);
}

void DoOneCommand(const Session& session) {
  const std::string fault = WhyNoCommand(session.options.command);
  if (!fault.empty()) throw CommandLineError(fault);
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  model.Do(session.options.command);
  SaveIfAsked(model, session.options);
}

void SaveBlock(const Session& session) {
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  WriteWhole(session.options.file, model.SaveCase());
}

void LoadBlock(const Session& session) {
  DriverModel model(session.api, session.trace);
  LoadInto(model, session.options.file, session.options.keepDataset);
  static constexpr const char* kNumbers[] = {
      "ConnectionMode",        "IPRModel",   "UpTimeMode", "HeadNodePort", "LinuxIXVersion",
      "CloseUnconnectedWells", "StdLogging", "Parallel"};
  static constexpr const char* kTexts[] = {"HeadNode", "SimExeName", "FileName"};
  std::vector<Json> rows;
  const auto add = [&rows](const std::string& property, const Json& value) {
    rows.push_back({{"property", property}, {"value", value}});
  };
  const auto read = [&model](const char* field) {
    return model.Get(fmt::format("Intersect.CaseDetails.{}", field));
  };
  for (const char* field : kNumbers) add(field, std::stoll(read(field)));
  for (const char* field : kTexts) add(field, read(field));
  for (const DriverWell& well : model.Wells()) {
    add("well " + well.name, well.isProducer ? "producer" : "injector");
  }
  Print(rows, session.options.json);
}

void ServeVariables(const Session& session) {
  const Options& options = session.options;
  std::vector<std::pair<int, std::string>> writes;
  for (const std::string& text : options.writes) writes.push_back(ParseWrite(text));
  if (!options.start && !(writes.empty() && options.readHandles.empty())) {
    throw CommandLineError("--read and --write need --start: only a running simulator has values");
  }
  std::vector<VariableChoice> additions;
  for (const std::string& text : options.additions) additions.push_back(ParseChoice(text));
  const CaseModel caseModel = ReadCaseOf(options);
  RequireStoreFile(caseModel, !additions.empty());
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, options);
  const std::string& storeFile = caseModel.simulator.storeFile;
  const bool changes = !additions.empty() || !options.deleteHandles.empty();
  if (changes && !HoldsVariables(session, model, storeFile)) {
    throw std::runtime_error("The variables couldn't be read from " + storeFile);
  }
  if (!additions.empty()) model.SaveCase();  // which copies a state file that isn't understood
  for (const int handle : options.deleteHandles) model.DeletePublished(handle);
  Publish(model, additions, storeFile);
  if (changes && !storeFile.empty()) model.SaveCase();
  if (changes && !HoldsVariables(session, model, storeFile)) {
    throw std::runtime_error("The variables couldn't be kept in " + storeFile);
  }
  for (const auto& [handle, value] : writes) model.WritePublished(handle, value);
  if (options.readHandles.empty()) return ListVariables(model, options.json);
  std::vector<Json> rows;
  for (const int handle : options.readHandles) {
    rows.push_back({{"handle", handle}, {"value", model.ReadPublished(handle)}});
  }
  Print(rows, options.json);
}

void Describe(const Session& session) {
  const CaseModel caseModel = ReadCaseOf(session.options);
  DriverModel model(session.api, session.trace);
  PrepareModel(model, caseModel, session.options);
  const std::string& file = session.options.file;
  // The module doesn't tell of a disk that has filled up: an old description stays until the new
  // one is whole.
  const std::string written = IsFile(file) ? file + ".part" : file;
  const auto drop = [](const std::string* part) {
    std::error_code ignored;
    std::filesystem::remove(platform::PathOf(*part), ignored);
  };
  const std::unique_ptr<const std::string, decltype(drop)> part(
      written == file ? nullptr : &written, drop);
  model.WriteEquipmentXml(written, !session.options.noVariables, session.options.wells);
  if (model.Wells().empty()) {
    fmt::print(stderr,
               "fieldrun: {} describes no wells, since no simulator is running that knows any; "
               "--start starts it\n",
               file);
  }
  if (!IsFile(written)) return;
  if (ReadInputFile(written).find("</Model>") == std::string::npos) {
    throw std::runtime_error(fmt::format("The description {} couldn't be written whole", file));
  }
  if (part) std::filesystem::rename(platform::PathOf(written), platform::PathOf(file));
}

}  // namespace gantry::fieldrun
