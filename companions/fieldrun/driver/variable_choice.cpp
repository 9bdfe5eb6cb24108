#include "fieldrun/driver/variable_choice.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <span>

#include <fmt/format.h>

#include "fieldrun/case/command_line_error.h"
#include "fieldrun/case/input_file.h"
#include "fieldrun/driver/module_text.h"
#include "fieldrun/platform/scratch_folder.h"
#include "platform/file_path.h"
#include "settings/case_archive.h"
#include "wells/exported_variables.h"
#include "wells/well_variable_catalogue.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;

constexpr int32_t kStateFileVersion = 2;
constexpr size_t kArchiveHeader = 2 * sizeof(uint32_t);
constexpr size_t kVariableCount = sizeof(int32_t);

const WellVariable* FindVariable(const std::string& name) {
  const auto found = std::ranges::find_if(WellVariableCatalogue, [&](const WellVariable& row) {
    return name == row.label || name == row.key;
  });
  return found == WellVariableCatalogue.end() ? nullptr : &*found;
}

std::string Labels() {
  std::string labels;
  for (const WellVariable& row : WellVariableCatalogue) {
    labels += fmt::format("{}\"{}\"", labels.empty() ? "" : ", ", row.label);
  }
  return labels;
}

void Add(CExportedVariables& list, const VariableChoice& choice) {
  CExportedVariableWellParent* parent = list.FindWellParent(choice.well);
  if (parent == nullptr) {
    parent = &list.Add(std::make_unique<CExportedVariableWellParent>());
    parent->WellName = choice.well;
  }
  const WellVariable& row = *FindVariable(choice.label);
  if (parent->Variables.FindByLabel(row.label) != nullptr) return;
  parent->Variables.Add(std::make_unique<CExportedVariable>(row));
}

/// A state file of the model, cut where its variables begin.
struct StateFile {
  std::string beforeVariables;
  std::string variables;
};

std::string WrittenState(DriverModel& model, const fs::path& scratch) {
  fs::remove(scratch);
  model.SetStoreFile(scratch.string(), false);
  model.SaveCase();
  const std::string name = platform::NameOf(scratch);
  return IsFile(name) ? ReadInputFile(name) : std::string();
}

/// What the inflow library writes ahead of the variables tells no length. Without its variables the
/// model writes all else and a count of 0.
StateFile TakeState(DriverModel& model, const fs::path& scratch) {
  const std::string whole = WrittenState(model, scratch);
  model.DeletePublished(-1);
  const std::string empty = WrittenState(model, scratch);
  if (empty.size() < kVariableCount || whole.size() < empty.size()) {
    throw DriverFailure("The module wrote no state file to " + scratch.string());
  }
  const size_t cut = empty.size() - kVariableCount;
  return {whole.substr(0, cut), whole.substr(cut)};
}

std::string Completed(const StateFile& state, const std::vector<VariableChoice>& choices) try {
  std::string block = state.beforeVariables.substr(0, kArchiveHeader) + state.variables;
  CaseArchive reader(block, CaseArchive::Direction::kRead);
  CExportedVariables list;
  list.Serialize(reader, kStateFileVersion);
  for (const VariableChoice& choice : choices) Add(list, choice);

  // Room for what was there and for as much again as each new variable can take.
  constexpr size_t kLargestVariable = 512;
  for (const VariableChoice& choice : choices)
    block.append(kLargestVariable + choice.well.size(), 0);
  std::string written(block.size(), '\0');
  CaseArchive writer(written, CaseArchive::Direction::kWrite);
  list.Serialize(writer, kStateFileVersion);
  return state.beforeVariables + written.substr(kArchiveHeader);
} catch (const ArchiveError&) {
  throw DriverFailure("The module's state file isn't whole");
}

}  // namespace

VariableChoice ParseChoice(const std::string& text) {
  // A well's name may hold a colon; a label holds none.
  const size_t colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0) {
    throw CommandLineError("--add " + text + ": must be WELL:LABEL");
  }
  VariableChoice choice{NameForModule(text.substr(0, colon)), text.substr(colon + 1)};
  if (FindVariable(choice.label) == nullptr) {
    throw CommandLineError("--add " + text + ": the label must be one of " + Labels());
  }
  return choice;
}

uint32_t CodeOfVariable(const std::string& key) { return FindVariable(key)->code; }

void Publish(DriverModel& model, const std::vector<VariableChoice>& choices,
             const std::string& storeFile) {
  if (choices.empty()) return;
  const ScratchFolder folder;
  const fs::path scratch = folder.File("state");
  const std::string completed = Completed(TakeState(model, scratch), choices);
  std::ofstream(scratch, std::ios::binary) << completed;
  model.SetStoreFile(scratch.string(), true);
  const std::string taken = WrittenState(model, scratch);
  if (taken.empty() || !completed.starts_with(taken)) {
    throw DriverFailure("The module couldn't read the variables from " + scratch.string());
  }
  model.SetStoreFile(storeFile, false);
}

}  // namespace gantry::fieldrun
