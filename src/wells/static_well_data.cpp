#include "wells/static_well_data.h"

#include <utility>

#include "boundary/error_text.h"
#include "client/name_index.h"
#include "settings/case_archive.h"
#include "wells/source.h"

namespace gantry {
namespace {

/// The first of `wells` whose name isn't among `known`; null when all are.
const StaticWellData* FirstUnknown(const std::vector<StaticWellData>& wells,
                                   const std::vector<StaticWellData>& known) {
  const NameIndex index(known, &StaticWellData::Name);
  for (const StaticWellData& well : wells) {
    if (!index.Find(well.Name)) return &well;
  }
  return nullptr;
}

}  // namespace

bool StaticWellData::Handle(TagParser& parser, TagContext /*context*/) {
  return parser.StringProperty(Name, "Name") || parser.IntProperty(SourceType, "SourceType") ||
         parser.BoolProperty(Connected, "Connected") || parser.IntProperty(OpMode, "OpMode");
}

StaticWellData* StaticWellDataCollection::Find(const std::string& name, int32_t* index) {
  StaticWellData* const found = Named(name);
  if (index != nullptr) *index = found != nullptr ? static_cast<int32_t>(found - Items.data()) : -1;
  return found;
}

int32_t StaticWellDataCollection::OpMode() const { return Items.empty() ? 0 : Items.back().OpMode; }

void StaticWellDataCollection::SetOpMode(int32_t opMode) {
  if (opMode == -1) return;
  for (StaticWellData& well : Items) well.OpMode = opMode;
}

std::vector<std::string> StaticWellDataCollection::Names(bool connectedOnly) const {
  std::vector<std::string> names;
  names.reserve(Items.size());
  for (const StaticWellData& well : Items) {
    if (well.Connected || !connectedOnly) names.push_back(well.Name);
  }
  return names;
}

void StaticWellDataCollection::RebuildFrom(const SourceList& sources) {
  const std::vector<StaticWellData> old = std::exchange(Items, {});
  const NameIndex known(old, &StaticWellData::Name);
  Items.reserve(sources.Items.size());
  for (const Source& source : sources.Items) {
    StaticWellData& well = Items.emplace_back();
    well.Name = source.Name;
    well.SourceType = source.SourceType;
    if (const auto position = known.Find(source.Name)) well.OpMode = old[*position].OpMode;
  }
}

void StaticWellDataCollection::Serialize(CaseArchive& archive) {
  archive.TransferList(Items, [&](StaticWellData& well) {
    archive.Transfer(well.Name);
    archive.Transfer(well.SourceType);
    archive.Transfer(well.OpMode);
  });
}

std::optional<std::string> ReconcileWells(const StaticWellDataCollection& inFile,
                                          const StaticWellDataCollection& inSimulator) {
  if (inFile.Items.size() != inSimulator.Items.size()) {
    return FormatText(
        "The number of wells in this simulation deck has changed: %d (in file) -> %d (just read "
        "from simulator)",
        static_cast<int>(inFile.Items.size()), static_cast<int>(inSimulator.Items.size()));
  }
  if (const StaticWellData* added = FirstUnknown(inSimulator.Items, inFile.Items)) {
    return FormatText(
        "Well '%s' is not known in the Tessel model - refresh the model by starting the "
        "simulation from the data entry screen",
        added->Name.c_str());
  }
  if (const StaticWellData* gone = FirstUnknown(inFile.Items, inSimulator.Items)) {
    return FormatText(
        "Well '%s' from the Tessel model can not be found in the simulation model which has just "
        "been run",
        gone->Name.c_str());
  }
  return std::nullopt;
}

}  // namespace gantry
