#include "model/field.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "model/fluid_record.h"
#include "model/inflow_points.h"
#include "model/well_reading.h"

namespace gantry {
namespace {

constexpr double kLeastGravity = 0.1;
constexpr double kDefaultOilGravity = 0.8;
constexpr double kDefaultWaterGravity = 1.0;

double UsableGravity(double gravity, double otherwise) {
  return gravity >= kLeastGravity ? gravity : otherwise;
}

/// The water is left out; the host's network relies on it.
double MassRate(double oil, double gas, const _tGetSetData& record) {
  return oil * kCubicFeetOfBarrel * kWaterDensity * record.oilGravity +
         gas * kCubicFeetOfMillion * kAirDensity * record.gasGravity;
}

void FillPoints(const Source& source, size_t count, _tGetSetData& record) {
  const InflowColumns& inflow = source.SimulatorIPR;
  std::copy_n(inflow.Pressure.begin(), count, record.pressure);
  std::copy_n(inflow.OilRate.begin(), count, record.oilRate);
  std::copy_n(inflow.GasRate.begin(), count, record.gasRate);
  std::copy_n(inflow.WaterRate.begin(), count, record.waterRate);
  std::fill_n(record.pointValue, count, source.PointValue);
  for (size_t i = 0; i < count; ++i) {
    record.massRate[i] = MassRate(record.oilRate[i], record.gasRate[i], record);
  }
}

void FillCompositions(const RowTable<double>& compositions, size_t points, _tGetSetData& record) {
  for (size_t i = 0; i < points; ++i) {
    const auto composition =
        i < compositions.RowCount() ? compositions[i] : std::span<const double>();
    const size_t count = std::min(composition.size(), kMaxComponents);
    double* const row = record.moleFractions[i];
    std::fill(std::copy_n(composition.begin(), count, row), row + kMaxComponents, 0.0);
  }
}

/// The state of a well that the host shuts: at surface only by the host's code for it, or by one
/// that isn't known.
int32_t ShutState(int32_t shutInCode) {
  return shutInCode == -1 || shutInCode == EXT_SHUT_IN_COMPLETIONS ? kShutCompletions
                                                                   : kShutSurface;
}

}  // namespace

void Field::ReadStatic(CExtConnectorBase& connector, std::vector<std::string>& componentNames) {
  Compositional = connector.GetCompositionalFlag();
  FluidModel = {};
  fluidRecord_.reset();
  if (Compositional) connector.GetEOSProperties(FluidModel);
  componentNames = FluidModel.componentNames;
  fluidRecord_ = MakeFluidRecord(FluidModel);
  connector.AdvanceNewton();  // wells are initialised from here on
  std::vector<ConnectorWellStatus> statuses;
  connector.GetWellStatus(statuses);
  Sources = MakeSources(statuses);
  sourceOfRecord_.clear();
}

bool Field::ReadWells(CExtConnectorBase& connector, const std::vector<std::string>& wells) {
  constexpr bool kUseBottomHolePressure = true;
  constexpr double kSkewness = 2.5;
  connector.GetWellDataAndIPR(FluidModel.componentCount, wells, wellRecords_,
                              kUseBottomHolePressure, kSkewness);
  return FillSources(Sources, wellRecords_, sourceOfRecord_);
}

void Field::SendOrders(CExtConnectorBase& connector, const StaticWellDataCollection& wells,
                       const StepRules& rules) {
  DrawUpOrders(Sources, wells, rules, orders_);
  orders_.Send(connector);
}

void Field::SetUpGasInjection(CExtConnectorBase& connector, const StaticWellDataCollection& wells,
                              size_t componentCount) {
  Doubles placeholder(componentCount, 0.0);
  if (!placeholder.empty()) placeholder.front() = 1.0;
  for (const StaticWellData& well : wells.Items) {
    if (!well.Connected || well.SourceType != kGasInjector) continue;
    const std::string source = InjectionSourceName(well.Name);
    connector.SetInjectionSource(well.Name, source);
    connector.SetWellInjectionComposition({source}, {placeholder});
  }
}

void Field::FillInflow(const Source& source, _tGetSetData& record) const {
  record.gasGravity = source.GasGravity;
  record.oilGravity = UsableGravity(source.OilGravity, kDefaultOilGravity);
  record.waterGravity = UsableGravity(source.WaterGravity, kDefaultWaterGravity);
  const size_t points = std::min(source.SimulatorIPR.Pressure.size(), kMaxInflowPoints);
  record.pointCount = static_cast<int32_t>(points);
  record.isShut = points == 0 ? 1 : 0;
  FillPoints(source, points, record);
  std::ranges::copy(source.PassThrough, record.passThrough);
  if (!Compositional) return;
  FillFluid(record.fluid);
  FillCompositions(source.SimulatorIPR.Composition, points, record);
}

void Field::TakeOperatingPoint(const _tGetSetData& record, Source& source) const {
  source.RequestedStatus = record.isShut == 0 ? kOpen : ShutState(record.shutInCode);
  source.OnTimeFraction = 1.0 - record.downFraction;
  IPRPoint& point = source.OpPoint;
  point = PointOf(record, 0);
  if (Compositional && source.SourceType == kGasInjector) {
    constexpr auto most = static_cast<int32_t>(kMaxComponents);
    const auto count = static_cast<size_t>(std::clamp(record.fluid.componentCount, 0, most));
    point.Composition.assign(record.moleFractions[0], record.moleFractions[0] + count);
  }
  if (source.SourceType == kProducer) return;
  source.PointValue = record.pointValue[0];
  source.OilGravity = record.oilGravity;
  source.GasGravity = record.gasGravity;
  source.WaterGravity = record.waterGravity;
  std::ranges::copy(record.passThrough, source.PassThrough.begin());
}

bool Field::FillFluid(FluidModelRecord& record) const {
  if (fluidRecord_ == nullptr) return false;
  CopyFluidRecord(*fluidRecord_, record);
  return true;
}

}  // namespace gantry
