#include "client/simulator_wells.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "client/intersect_client.h"
#include "client/well_lookup.h"
#include "client/words.h"

namespace gantry {

namespace {

constexpr const char* kBadWellData = "Unexpected answer when querying the well data.";
constexpr const char* kBadWellStatuses = "Unexpected answer when querying the well statuses.";
constexpr const char* kBadStatusData = "Unexpected answer when querying the well status data.";

/// One number of a well: its item and where it goes.
struct WellDataItem {
  const char* item;
  double ConnectorWellRecord::*field;
};

constexpr std::array<WellDataItem, 8> kWellData = {{
    {words::kOilProductionRate, &ConnectorWellRecord::oilRate},
    {words::kGasProductionRate, &ConnectorWellRecord::gasRate},
    {words::kWaterProductionRate, &ConnectorWellRecord::waterRate},
    {words::kWaterInjectionRate, &ConnectorWellRecord::waterInjectionRate},
    {words::kGasInjectionRate, &ConnectorWellRecord::gasInjectionRate},
    {words::kUptimeFraction, &ConnectorWellRecord::uptimeFraction},
    {words::kBottomHolePressure, &ConnectorWellRecord::bottomHolePressure},
    {words::kTubingHeadPressure, &ConnectorWellRecord::tubingHeadPressure},
}};

Strings NamesOf(std::span<const WellDataItem> data) {
  Strings names;
  for (const WellDataItem& entry : data) names.emplace_back(entry.item);
  return names;
}

void RequireSameItems(const Strings& asked, const Strings& replied, const char* failure) {
  if (asked != replied) throw std::runtime_error(failure);
}

void AskForData(IntersectClientBase& client, const Strings& wells, WellDataWorkspace& workspace) {
  static const Strings items = NamesOf(kWellData);
  static const Strings statusItems = {words::kStatus};
  if (workspace.wells != wells) {
    workspace.wells = wells;
    client.encode_well_query(wells, items, workspace.dataQuery);
    client.encode_well_query_as_strings(wells, statusItems, workspace.statusQuery);
  }
  client.query_wells(workspace.dataQuery, workspace.data);
  RequireSameItems(items, workspace.data.items, kBadWellData);
  client.query_wells_as_strings(workspace.statusQuery, workspace.statuses);
  RequireSameItems(statusItems, workspace.statuses.items, kBadWellStatuses);
  const bool isKnown = workspace.data.sameWells && workspace.statuses.sameWells &&
                       workspace.statusRows.size() == workspace.data.wells.size();
  if (isKnown) return;
  workspace.statusRows = WellLookup(workspace.data.wells).PlacesIn(workspace.statuses.wells);
}

}  // namespace

std::vector<ConnectorWellStatus> QueryWellStatuses(IntersectClientBase& client) {
  const Strings items = {words::kType, words::kStatus};
  WellQueryStringResult result = client.query_wells_as_strings({"*"}, items);
  RequireSameItems(items, result.items, kBadWellStatuses);
  std::vector<ConnectorWellStatus> statuses;
  statuses.reserve(result.wells.size());
  for (size_t i = 0; i < result.wells.size(); ++i) {
    const std::span<const std::string> row = result.values[i];
    statuses.push_back({std::move(result.wells[i]), row[0], row[1]});
  }
  return statuses;
}

void QueryWellData(IntersectClientBase& client, const Strings& wells, WellDataWorkspace& workspace,
                   size_t begin, std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return records.resize(begin);
  // A query that fails leaves nothing behind that the next one would go by.
  WellDataWorkspace kept = std::exchange(workspace, {});
  AskForData(client, wells, kept);
  const WellQueryResult& data = kept.data;
  records.resize(begin + data.wells.size());
  for (size_t i = 0; i < data.wells.size(); ++i) {
    const size_t statusRow = kept.statusRows[i];
    if (statusRow == WellLookup::kMissing) throw std::runtime_error(kBadStatusData);
    ConnectorWellRecord& record = records[begin + i];
    record.name = data.wells[i];
    record.status = kept.statuses.values[statusRow].front();
    const std::span<const double> row = data.values[i];
    for (size_t item = 0; item < row.size(); ++item) record.*kWellData[item].field = row[item];
  }
  workspace = std::move(kept);
}

Doubles QueryWellVariables(IntersectClientBase& client, const std::string& well,
                           const Strings& items) {
  const WellQueryResult result = client.query_wells({well}, items);
  RequireSameItems(items, result.items, kBadWellData);
  if (items.empty()) return {};
  if (result.values.RowCount() == 0) throw std::runtime_error(kBadWellData);
  const std::span<const double> row = result.values[0];
  Doubles values;
  for (const std::string& item : items) {
    // An item that was asked for twice gives the value of its first place both times.
    const auto place = std::find(result.items.begin(), result.items.end(), item);
    values.push_back(row[static_cast<size_t>(place - result.items.begin())]);
  }
  return values;
}

void SetStatusOfWells(IntersectClientBase& client, const Strings& wells, const Strings& statuses) {
  if (!wells.empty()) client.set_status_for_wells(wells, statuses, words::kUser);
}

void SetUptimeOfWells(IntersectClientBase& client, const Strings& wells, const Doubles& fractions) {
  if (!wells.empty()) client.set_uptime_fractions_for_wells(wells, fractions);
}

void SetConstraintsOfWells(IntersectClientBase& client, const Strings& wells,
                           const std::vector<Strings>& items, const std::vector<Doubles>& values) {
  if (!wells.empty()) client.set_user_constraints_for_wells(wells, items, values);
}

}  // namespace gantry
