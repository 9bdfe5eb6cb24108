#include "fieldrun/verbs/verbs.h"

#include <cerrno>
#include <filesystem>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/case_reader.h"
#include "fieldrun/platform/interruption.h"
#include "fieldrun/platform/terminal.h"
#include "platform/dynamic_library.h"
#include "platform/file_path.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "settings/machine_config.h"
#include "text/failure_text.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

enum ExitStatus { kDone = 0, kFailed = 1, kBadInput = 2, kEndedByUser = 3 };

// Beside the program, as on Windows; else in the lib folder beside its own.
std::string DefaultModule() {
  const fs::path folder = platform::PathOf(platform::ModuleFolder());
  const std::string name = platform::LibraryFileName("Intersect");
  if (fs::exists(folder / name)) return platform::NameOf(folder / name);
  return platform::NameOf((folder / ".." / "lib" / name).lexically_normal());
}

std::string ValueText(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  return value.dump();
}

// A full disk shows only here. A reader that has had enough of the output is no failure.
void CheckWritten(const Options& options, const CallTrace* trace) {
  if (std::fflush(UserOutput()) != 0 && errno == ENOSPC) {
    throw std::runtime_error("The output couldn't be written whole");
  }
  if (trace != nullptr && !trace->IsWhole()) {
    throw std::runtime_error("The trace " + options.trace + " couldn't be written whole");
  }
}

/// False when the verb has told faults of the user's files.
bool DoVerb(const Options& options, CallTrace* trace) {
  const auto& action = RowOf(options.verb).action;
  if (const auto* alone = std::get_if<bool (*)(const Options&)>(&action)) return (*alone)(options);
  const std::string path = options.module.empty() ? DefaultModule() : options.module;
  const std::unique_ptr<ModuleApi> api = ModuleApi::Load(path);
  std::get<void (*)(const Session&)>(action)({options, *api, trace});
  return true;
}

}  // namespace

bool ShowReference(const Options& options) {
  fmt::print(UserOutput(), "{}", options.jsonSchema ? CaseSchema() : CaseReference());
  return true;
}

std::string MachineSimulator() {
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  return key ? key->ReadText("SimExecutable").value_or("") : "";
}

std::string DefaultSimulator() {
  if (platform::CanOpenForReading(MachineSimulator())) return "";
  return platform::ModuleFolder() + platform::ProgramFileName("tanksim");
}

CaseModel ReadCaseOf(const Options& options) {
  CaseModel model = ReadCase(options.caseFile);
  for (const std::string& warning : model.warnings) fmt::print(stderr, "{}\n", warning);
  if (!options.simulator.empty()) model.simulator.executable = options.simulator;
  if (!options.output.empty())
    model.general.output = platform::NameOf(fs::absolute(platform::PathOf(options.output)));
  return model;
}

void Print(const std::vector<Json>& rows, bool asJson) {
  if (asJson) {
    fmt::print(UserOutput(), "{}", JsonText(rows, 2));
    return;
  }
  std::vector<std::vector<std::string>> lines;
  for (const Json& row : rows) {
    std::vector<std::string> heading, line;
    for (const auto& [name, value] : row.items()) {
      heading.push_back(name);
      line.push_back(ValueText(value));
    }
    if (lines.empty()) lines.push_back(heading);
    lines.push_back(line);
  }
  std::vector<size_t> widths(lines.empty() ? 0 : lines.front().size());
  for (const auto& line : lines) {
    for (size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], line[i].size());
  }
  for (const auto& line : lines) {
    std::string text;
    for (size_t i = 0; i < line.size(); ++i) text += fmt::format("{:<{}}  ", line[i], widths[i]);
    fmt::print(UserOutput(), "{}\n", text.substr(0, text.find_last_not_of(' ') + 1));
  }
}

int RunVerb(const Options& options) {
  UserOutput();  // from here on, before any simulator can write among the results
  try {
    std::unique_ptr<CallTrace> trace;
    if (!options.trace.empty()) trace = std::make_unique<CallTrace>(options.trace);
    const bool isSound = DoVerb(options, trace.get());
    CheckWritten(options, trace.get());
    return isSound ? kDone : kBadInput;
  } catch (const CaseError& error) {
    fmt::print(stderr, "{}\n", error.what());
    return kBadInput;
  } catch (const CommandLineError& error) {
    fmt::print(stderr, "fieldrun: {}\n", error.what());
    return kBadInput;
  } catch (const EndedByUser& end) {
    fmt::print(stderr, "fieldrun: {}\n", end.what());
    return kEndedByUser;
  } catch (const std::exception& error) {
    fmt::print(stderr, "fieldrun: {}\n",
               FailureText(error, fmt::format("fieldrun {}", RowOf(options.verb).name)));
    return kFailed;
  }
}

}  // namespace gantry::fieldrun
