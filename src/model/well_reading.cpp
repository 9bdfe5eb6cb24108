#include "model/well_reading.h"

#include <algorithm>
#include <span>

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

void FillInflow(std::vector<IPRPoint>& points, const ConnectorWellRecord& record) {
  const auto at = [](const std::vector<double>& rates, size_t i) {
    return i < rates.size() ? rates[i] : 0.0;
  };
  points.resize(record.iprPressure.size());
  for (size_t i = 0; i < points.size(); ++i) {
    points[i].Pressure = record.iprPressure[i];
    points[i].OilRate = at(record.iprOilRate, i);
    points[i].GasRate = at(record.iprGasRate, i);
    points[i].WaterRate = at(record.iprWaterRate, i);
    const bool hasComposition = i < record.iprComposition.RowCount();
    const auto composition = hasComposition ? record.iprComposition[i] : std::span<const double>();
    points[i].Composition.assign(composition.begin(), composition.end());
  }
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

void FillSource(Source& source, const ConnectorWellRecord& record) {
  source.OnTimeFraction = record.uptimeFraction;
  FillCurrent(source.Current, record, source.SourceType == kProducer);
  FillInflow(source.SimulatorIPR, record);
  source.GasGravity = DensityOf(record, record.iprGasDensity) / kAirDensity;
  source.OilGravity = DensityOf(record, record.iprOilDensity) / kWaterDensity;
  source.WaterGravity = DensityOf(record, record.iprWaterDensity) / kWaterDensity;
}

bool FillSources(SourceList& sources, const std::vector<ConnectorWellRecord>& records) {
  const NameIndex index(sources.Items, &Source::Name);
  for (const ConnectorWellRecord& record : records) {
    const auto position = index.Find(record.name);
    if (!position) return false;
    FillSource(sources.Items[*position], record);
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
