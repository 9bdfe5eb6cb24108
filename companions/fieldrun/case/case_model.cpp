#include "fieldrun/case/case_model.h"

#include <algorithm>

namespace gantry::fieldrun {

int Located::LineOf(const std::string& key) const {
  const auto found = keyLines.find(key);
  return found == keyLines.end() ? line : found->second;
}

std::string_view KindName(WellKind kind) {
  static constexpr std::string_view kNames[] = {"producer", "water injector", "gas injector"};
  return kNames[static_cast<size_t>(kind)];
}

bool CanTake(const WellSpec& well, const TubingSpec& tubing) {
  if (!tubing.table) return well.IsProducer() || !tubing.vfp.empty();
  return tubing.table->isProducer == well.IsProducer();
}

const TubingSpec* CaseModel::TubingOf(const WellSpec& well) const {
  const auto found = std::ranges::find(tubings, well.tubing, &TubingSpec::name);
  return found == tubings.end() ? nullptr : &*found;
}

std::vector<std::string> CaseModel::WellsOf(const EventSpec& event) const {
  if (!event.well.empty()) return {event.well};
  if (!event.wells.empty()) return event.wells;
  const auto group = std::ranges::find(groups, event.group, &GroupSpec::name);
  if (group != groups.end() && !group->wells.empty()) return group->wells;
  std::vector<std::string> all;
  for (const WellSpec& well : wells) {
    if (well.connected) all.push_back(well.name);
  }
  return all;
}

void CaseModel::Fail(int line, const std::string& reason) const {
  throw CaseError(file, line, reason);
}

}  // namespace gantry::fieldrun
