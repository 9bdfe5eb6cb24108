#include "model/well_reading.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

#include "client/name_index.h"
#include "client/words.h"
#include "model/ipr_table.h"

namespace gantry {
namespace {

void FillCurrent(IPRPoint& current, const ConnectorWellRecord& record, bool isProducer) {
  current.Pressure = record.bottomHolePressure;
  current.OilRate = isProducer ? record.oilRate : 0.0;
  current.GasRate = isProducer ? record.gasRate : record.gasInjectionRate;
  current.WaterRate = isProducer ? record.waterRate : record.waterInjectionRate;
}

/// Takes the record's lists over, and leaves it those of the reading before.
void TakeInflow(InflowColumns& inflow, ConnectorWellRecord& record) {
  std::swap(inflow.Pressure, record.iprPressure);
  std::swap(inflow.OilRate, record.iprOilRate);
  std::swap(inflow.GasRate, record.iprGasRate);
  std::swap(inflow.WaterRate, record.iprWaterRate);
  for (std::vector<double>* rates : {&inflow.OilRate, &inflow.GasRate, &inflow.WaterRate}) {
    rates->resize(inflow.Pressure.size());
  }
  std::swap(inflow.Composition, record.iprComposition);
}

/// An open well's density at its present pressure; a shut well's at the middle of its table.
double DensityOf(const ConnectorWellRecord& record, const std::vector<double>& densities) {
  if (densities.empty()) return 0.0;
  const size_t count = std::min(record.iprPressure.size(), densities.size());
  if (record.status != words::kOpen || count < 2) return densities[densities.size() / 2];
  return InterpolateTable(std::span(record.iprPressure).first(count),
                          std::span(densities).first(count), record.bottomHolePressure, false);
}

}  // namespace

void FillSource(Source& source, ConnectorWellRecord& record) {
  source.OnTimeFraction = record.uptimeFraction;
  FillCurrent(source.Current, record, source.SourceType == kProducer);
  source.GasGravity = DensityOf(record, record.iprGasDensity) / kAirDensity;
  source.OilGravity = DensityOf(record, record.iprOilDensity) / kWaterDensity;
  source.WaterGravity = DensityOf(record, record.iprWaterDensity) / kWaterDensity;
  TakeInflow(source.SimulatorIPR, record);
}

bool FillSources(SourceList& sources, std::vector<ConnectorWellRecord>& records,
                 std::vector<size_t>& places) {
  const auto isAt = [&sources](size_t place, const std::string& name) {
    return place < sources.Items.size() && sources.Items[place].Name == name;
  };
  std::optional<NameIndex> index;
  places.resize(records.size());
  for (size_t i = 0; i < records.size(); ++i) {
    if (!isAt(places[i], records[i].name)) {
      if (!index) index.emplace(sources.Items, &Source::Name);
      const auto position = index->Find(records[i].name);
      if (!position) return false;
      places[i] = *position;
    }
    FillSource(sources.Items[places[i]], records[i]);
  }
  return true;
}

SourceList MakeSources(const std::vector<ConnectorWellStatus>& statuses) {
  SourceList sources;
  sources.Items.reserve(statuses.size());
  for (const ConnectorWellStatus& status : statuses) {
    Source& source = sources.Items.emplace_back();
    source.Name = status.name;
    source.SourceType = ClassifyWellType(status.type);
  }
  return sources;
}

}  // namespace gantry
