#include <algorithm>
#include <array>
#include <stdexcept>

#include "client/inflow_sweep.h"
#include "client/intersect_client.h"
#include "client/local_connector.h"
#include "client/well_lookup.h"

namespace gantry {

namespace {

constexpr const char* kBadWellData = "Unexpected answer when querying the well data.";
constexpr const char* kBadWellStatuses = "Unexpected answer when querying the well statuses.";
constexpr const char* kBadStatusData = "Unexpected answer when querying the well status data.";

/// One number of a well: its item, where it goes, and its unit.
struct WellDataItem {
  const char* item;
  double ConnectorWellRecord::*field;
  int32_t code;
};

constexpr std::array<WellDataItem, 8> kWellData = {{
    {"OIL_PRODUCTION_RATE", &ConnectorWellRecord::oilRate, kLiquidRate},
    {"GAS_PRODUCTION_RATE", &ConnectorWellRecord::gasRate, kGasRate},
    {"WATER_PRODUCTION_RATE", &ConnectorWellRecord::waterRate, kLiquidRate},
    {"WATER_INJECTION_RATE", &ConnectorWellRecord::waterInjectionRate, kLiquidRate},
    {"GAS_INJECTION_RATE", &ConnectorWellRecord::gasInjectionRate, kGasRate},
    {"UPTIME_FRACTION", &ConnectorWellRecord::uptimeFraction, kNoUnit},
    {"BOTTOM_HOLE_PRESSURE", &ConnectorWellRecord::bottomHolePressure, kPressure},
    {"TUBING_HEAD_PRESSURE", &ConnectorWellRecord::tubingHeadPressure, kPressure},
}};

/// The inflow arrays that carry a unit.
struct InflowArray {
  std::vector<double> ConnectorWellRecord::*field;
  int32_t code;
};

constexpr std::array<InflowArray, 8> kInflowArrays = {{
    {&ConnectorWellRecord::iprPressure, kPressure},
    {&ConnectorWellRecord::iprOilRate, kLiquidRate},
    {&ConnectorWellRecord::iprWaterRate, kLiquidRate},
    {&ConnectorWellRecord::iprGasRate, kGasRate},
    {&ConnectorWellRecord::iprTemperature, kTemperature},
    {&ConnectorWellRecord::iprGasDensity, kDensity},
    {&ConnectorWellRecord::iprOilDensity, kDensity},
    {&ConnectorWellRecord::iprWaterDensity, kDensity},
}};

void RequireSameItems(const Strings& asked, const Strings& replied, const char* failure) {
  if (asked != replied) throw std::runtime_error(failure);
}

/// The points that the last sweep has appended.
void ConvertLastPoints(const UnitConverter& units, ConnectorWellRecord& record) {
  for (const InflowArray& array : kInflowArrays) {
    units.FromSimulator(std::span(record.*array.field).last(kSweepRungs), array.code);
  }
}

/// A row in the order of `kWellData`.
ConnectorWellRecord MakeRecord(const UnitConverter& units, const std::string& name,
                               const std::string& status, std::span<const double> row) {
  ConnectorWellRecord record;
  record.name = name;
  record.status = status;
  for (size_t i = 0; i < kWellData.size(); ++i) {
    record.*kWellData[i].field = units.FromSimulator(row[i], kWellData[i].code);
  }
  return record;
}

template <class Lists>
bool HaveSizesOf(const std::vector<Strings>& items, const Lists& lists) {
  return std::ranges::equal(items, lists, {}, &Strings::size, &Lists::value_type::size);
}

}  // namespace

void CExtConnectorLocalBase::GetWellStatus(std::vector<ConnectorWellStatus>& statuses) {
  statuses.clear();
  const Strings items = {"TYPE", "STATUS"};
  WellQueryStringResult result = Client().query_wells_as_strings({"*"}, items);
  RequireSameItems(items, result.items, kBadWellStatuses);
  statuses.reserve(result.wells.size());
  for (size_t i = 0; i < result.wells.size(); ++i) {
    const std::span<const std::string> row = result.values[i];
    statuses.push_back({std::move(result.wells[i]), row[0], row[1]});
  }
}

void CExtConnectorLocalBase::GetWellData(const Strings& wells,
                                         std::vector<ConnectorWellRecord>& records) {
  if (wells.empty()) return;
  Strings items;
  for (const WellDataItem& entry : kWellData) items.emplace_back(entry.item);
  const WellQueryResult data = Client().query_wells(wells, items);
  RequireSameItems(items, data.items, kBadWellData);
  const Strings statusItems = {"STATUS"};
  const WellQueryStringResult statuses = Client().query_wells_as_strings(wells, statusItems);
  RequireSameItems(statusItems, statuses.items, kBadWellStatuses);

  WellLookup lookup(data.wells);
  const std::vector<size_t>& places = lookup.PlacesIn(statuses.wells);
  records.reserve(records.size() + data.wells.size());
  for (size_t i = 0; i < data.wells.size(); ++i) {
    if (places[i] == WellLookup::kMissing) throw std::runtime_error(kBadStatusData);
    records.push_back(MakeRecord(*unitConverter, data.wells[i], statuses.values[places[i]].front(),
                                 data.values[i]));
  }
}

void CExtConnectorLocalBase::GetWellIPRData(int32_t componentCount, const Strings& wells,
                                            std::vector<ConnectorWellRecord>& records,
                                            bool useBottomHolePressure, double skewness) {
  // So high that the well's other limits decide.
  constexpr double kUnlimitedRate = 100000.0;
  if (wells.empty()) return;
  SetWellStatus(wells, Strings(wells.size(), "OPEN"));
  MeasureInflow(Client(), wells,
                {.componentCount = componentCount,
                 .useBottomHolePressure = useBottomHolePressure,
                 .skewness = skewness,
                 .firstLiquidRate = unitConverter->ToSimulator(kUnlimitedRate, kLiquidRate),
                 .firstGasRate = unitConverter->ToSimulator(kUnlimitedRate, kGasRate)},
                records);
  for (ConnectorWellRecord& record : records) ConvertLastPoints(*unitConverter, record);
}

void CExtConnectorLocalBase::GetWellVariables(const std::string& well, const Strings& items,
                                              const std::vector<int32_t>& codes, Doubles& values) {
  if (items.size() != codes.size()) {
    throw std::runtime_error("Incorrect argument dimensions passed to GetWellVariables");
  }
  const WellQueryResult result = Client().query_wells({well}, items);
  RequireSameItems(items, result.items, kBadWellData);
  if (items.empty()) return;
  if (result.values.RowCount() == 0) throw std::runtime_error(kBadWellData);
  const std::span<const double> row = result.values[0];
  for (size_t i = 0; i < items.size(); ++i) {
    // An item that was asked for twice gives the value of its first place both times.
    const auto place = std::find(result.items.begin(), result.items.end(), items[i]);
    const double value = row[static_cast<size_t>(place - result.items.begin())];
    values.push_back(unitConverter->FromSimulator(value, codes[i]));
  }
}

void CExtConnectorLocalBase::SetWellConstraints(const Strings& wells,
                                                const std::vector<Strings>& items,
                                                const std::vector<Doubles>& values,
                                                const std::vector<std::vector<int32_t>>& codes) {
  if (wells.empty()) return;
  if (items.size() != wells.size() || !HaveSizesOf(items, values) || !HaveSizesOf(items, codes)) {
    throw std::runtime_error("Incorrect argument dimensions passed to SetWellConstraints");
  }
  std::vector<Doubles> converted = values;
  std::vector<Strings> setters;
  setters.reserve(wells.size());
  for (size_t i = 0; i < wells.size(); ++i) {
    for (size_t j = 0; j < converted[i].size(); ++j) {
      converted[i][j] = unitConverter->ToSimulator(converted[i][j], codes[i][j]);
    }
    setters.emplace_back(items[i].size(), "USER");
  }
  Client().set_constraints_for_wells(wells, items, converted, setters);
}

}  // namespace gantry
