#include "fieldrun/case/case_reader.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "described_toml/described_table.h"
#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/input_file.h"
#include "platform/dynamic_library.h"
#include "platform/file_path.h"

namespace gantry::fieldrun {
namespace {

namespace fs = std::filesystem;
using toml_reader::DescribedTable;

constexpr toml_reader::Wording kWording{
    .mistyped = "{key} must be {what}",
    .tooLow = "{key} must be at least {low}{unit}",
    .tooHigh = "{key} must be at most {high}{unit}",
    .noChoice = "{key} can't be \"{value}\"; it must be {what}{hint}",
    .missing = "[{section}] needs the key \"{key}\"",
    .unknown = "[{section}] has no key \"{key}\"{hint}",
    .unknownAtTop = "a case has no section \"{key}\"{hint}",
    .firstChoice = "one of ",
    .lastChoice = ", ",
    .date = "a date without quotes, like 2015-01-31",
    .list = "a list",
    .table = "a section, [{key}]",
    .tables = "a list of sections, [[{key}]]",
};

/// True when all that is there can be taken.
template <class Rows, class Spec>
bool ReadRows(const DescribedTable& table, const Rows& rows, Spec& spec, Located& place) {
  for (const KeyRow<Spec>& row : rows) {
    const std::string_view name = row.about.name;
    if (table.Has(name)) place.keyLines.emplace(name, table.LineOf(name));
  }
  return table.Read(rows, spec);
}

/// What wells and groups both have is the group's where there is one.
bool ReadChanges(const DescribedTable& table, EventSpec& event) {
  const bool hasGroup = table.Has("group");
  std::vector<KeyRow<WellSpec>> ofWells;
  std::vector<KeyRow<GroupSpec>> ofGroup;
  for (const KeyRow<WellSpec>& row : ChangesOfWells()) {
    if (!hasGroup || !HasKey(ChangesOfGroups(), row.about.name)) ofWells.push_back(row);
  }
  for (const KeyRow<GroupSpec>& row : ChangesOfGroups()) {
    if (hasGroup || !HasKey(ChangesOfWells(), row.about.name)) ofGroup.push_back(row);
  }
  const bool areWells = ReadRows(table, ofWells, event.wellChange, event);
  return ReadRows(table, ofGroup, event.groupChange, event) && areWells;
}

template <class Spec>
void ReadKeys(const DescribedTable& table, KeyTable<Spec> keys, Spec& spec) {
  spec.line = table.Line();
  bool isRead = ReadRows(table, keys, spec, spec);
  if constexpr (std::is_same_v<Spec, EventSpec>) isRead = ReadChanges(table, spec) && isRead;
  spec.isSound = table.RejectUnknownKeys() && isRead;
}

template <class Spec>
void ReadSection(const DescribedTable& file, const CaseSection<Spec>& section, Spec& spec) {
  const bool isSection =
      file.Try([&] { ReadKeys(file.Section(section.name), section.keys, spec); });
  spec.isSound = spec.isSound && isSection;
}

template <class Spec>
void ReadSection(const DescribedTable& file, const CaseSection<std::vector<Spec>>& section,
                 std::vector<Spec>& specs) {
  file.Try([&] {
    for (const DescribedTable& table : file.Tables(section.name)) {
      ReadKeys(table, section.keys, specs.emplace_back());
    }
  });
}

/// The units come with the first section: every other number is converted by them.
void ReadSections(const DescribedTable& file, CaseModel& model) {
  ForEachSection([&](const auto& section) {
    ReadSection(file, section, model.*section.part);
    file.UseUnits(model.general.isSound ? std::optional(model.Units()) : std::nullopt);
  });
  file.RejectUnknownKeys();
}

std::string FromFolder(const fs::path& folder, const std::string& path) {
  return path.empty() ? path
                      : platform::NameOf((folder / platform::PathOf(path)).lexically_normal());
}

/// One that came with this program: no results belong there.
bool IsInstalledExample(const fs::path& folder) {
  for (const char* examples : {"examples", "../share/gantry/examples"}) {
    std::error_code error;
    const fs::path place = fs::relative(folder, platform::ModuleDirectory() / examples, error);
    if (!error && !place.empty() && *place.begin() != "..") return true;
  }
  return false;
}

void CompletePaths(CaseModel& model) {
  const fs::path file = fs::absolute(platform::PathOf(model.file));
  const fs::path folder = file.parent_path();
  if (model.general.title.empty()) model.general.title = platform::NameOf(file.stem());
  std::string& output = model.general.output;
  const bool isElsewhere = output.empty() && IsInstalledExample(folder);
  output =
      FromFolder(isElsewhere ? fs::current_path() : folder, output.empty() ? "results" : output);
  model.simulator.deck = FromFolder(folder, model.simulator.deck);
  model.simulator.storeFile = FromFolder(folder, model.simulator.storeFile);
  for (TubingSpec& tubing : model.tubings) tubing.vfp = FromFolder(folder, tubing.vfp);
  // A bare name is looked for along the search path by whoever starts it.
  if (platform::PathOf(model.simulator.executable).has_parent_path()) {
    model.simulator.executable = FromFolder(folder, model.simulator.executable);
  }
}

/// What is wrong with a file is told where the case first names it.
void ReadLiftTables(CheckedCase& checked) {
  std::set<std::string> told;
  for (TubingSpec& tubing : checked.model.tubings) {
    if (!tubing.isSound || tubing.vfp.empty()) continue;
    try {
      tubing.table = std::make_shared<VfpTable>(
          ReadVfpTable(tubing.vfp, tubing.vfpTable, checked.model.Units()));
    } catch (const CaseError& error) {
      tubing.isSound = false;
      const bool isNew = told.insert(error.what()).second;
      if (isNew) checked.findings.push_back({tubing.LineOf("vfp"), error.what()});
    }
  }
}

}  // namespace

bool CheckedCase::HasErrors() const { return std::ranges::any_of(findings, &Finding::isError); }

CheckedCase ReadAndCheckCase(const std::string& path) {
  CheckedCase checked;
  checked.model.file = path;
  const std::string text = ReadInputFile(path);
  try {
    const auto file = DescribedTable::ReadText(text, path, kWording);
    ReadSections(file, checked.model);
    checked.findings = file.Findings();
    CompletePaths(checked.model);
    ReadLiftTables(checked);
    CheckCase(checked.model, checked.findings);
  } catch (const CaseError& error) {
    checked.findings = error.Findings;
  }
  std::ranges::stable_sort(checked.findings, {}, &Finding::line);
  return checked;
}

CaseModel ReadCase(const std::string& path) {
  CheckedCase checked = ReadAndCheckCase(path);
  std::vector<Finding> errors;
  for (const Finding& finding : checked.findings) {
    if (finding.isError) errors.push_back(finding);
    if (!finding.isError) checked.model.warnings.push_back(finding.In(path));
  }
  if (!errors.empty()) throw CaseError(path, errors);
  return std::move(checked.model);
}

}  // namespace gantry::fieldrun
