// The exchange with the host's network: inflow tables out, operating points in.

#include <algorithm>
#include <cinttypes>
#include <cstring>
#include <span>
#include <utility>

#include "model/ext_model.h"
#include "model/fluid_record.h"
#include "model/model_failure.h"

namespace gantry {
namespace {

constexpr double kLeastGravity = 0.1;
constexpr double kDefaultOilGravity = 0.8;
constexpr double kDefaultWaterGravity = 1.0;

// Pounds a day: barrels to cubic feet, and the densities of water and air.
constexpr double kCubicFeetOfBarrel = 5.615;
constexpr double kWaterDensity = 62.43;
constexpr double kCubicFeetOfMillion = 1000000.0;
constexpr double kAirDensity = 0.0763;

double UsableGravity(double gravity, double otherwise) {
  return gravity >= kLeastGravity ? gravity : otherwise;
}

/// The water is left out; the host's network relies on it.
double MassRate(double oil, double gas, const _tGetSetData& record) {
  return oil * kCubicFeetOfBarrel * kWaterDensity * record.oilGravity +
         gas * kCubicFeetOfMillion * kAirDensity * record.gasGravity;
}

void FillPoints(const Source& source, std::span<const IPRPoint> points, _tGetSetData& record) {
  for (size_t i = 0; i < points.size(); ++i) {
    record.oilRate[i] = points[i].OilRate;
    record.waterRate[i] = points[i].WaterRate;
    record.gasRate[i] = points[i].GasRate;
    record.pressure[i] = points[i].Pressure;
    record.pointValue[i] = source.PointValue;
    record.massRate[i] = MassRate(record.oilRate[i], record.gasRate[i], record);
  }
}

void FillCompositions(std::span<const IPRPoint> points, _tGetSetData& record) {
  for (size_t i = 0; i < points.size(); ++i) {
    const std::vector<double>& composition = points[i].Composition;
    const size_t count = std::min(composition.size(), kMaxComponents);
    double* const row = record.moleFractions[i];
    std::memset(row, 0, sizeof record.moleFractions[i]);
    std::copy_n(composition.begin(), count, row);
  }
}

/// What the host sees of the inflow, after the library may have changed it.
void KeepHostInflow(const _tGetSetData& record, std::vector<IPRPoint>& points) {
  constexpr auto most = static_cast<int32_t>(kMaxInflowPoints);
  points.assign(static_cast<size_t>(std::clamp(record.pointCount, 0, most)), IPRPoint());
  for (size_t i = 0; i < points.size(); ++i) {
    points[i].Pressure = record.pressure[i];
    points[i].OilRate = record.oilRate[i];
    points[i].GasRate = record.gasRate[i];
    points[i].WaterRate = record.waterRate[i];
  }
}

/// The state of a well that the host shuts: at surface only by the host's code for it, or by one
/// that isn't known.
int32_t ShutState(int32_t shutInCode) {
  return shutInCode == -1 || shutInCode == 2 ? kShutCompletions : kShutSurface;
}

std::string NoSuchWell(const char* word, int32_t well, const char* operation) {
  return FormatText("The requested well %s %" PRId64 " does not exist (function call %s).", word,
                    int64_t{well} + 1, operation);
}

}  // namespace

bool CExtModel::HasSource(int32_t well) const {
  return well >= 0 && static_cast<size_t>(well) < Sources.Items.size();
}

int32_t CExtModel::GetIPR(_tGetSetData* record, ExtErrorBlock* err) {
  const int32_t well = record->well;
  const auto missing = [&] { return Fail(err, NoSuchWell("number", well, "GetIPR")); };
  if (!HasSource(well)) return missing();
  FillInflowRecord(Sources.Items[static_cast<size_t>(well)], *record);
  if (Settings.IPRModel == 1) TransformInflow(Sources.Items[static_cast<size_t>(well)], *record);
  if (!HasSource(well)) return missing();  // the library may have started the simulator anew
  Source& source = Sources.Items[static_cast<size_t>(well)];
  KeepHostInflow(*record, source.HostIPR);
  record->hasStepped = CurrentElapsedDays > 0.0 ? 1 : 0;
  record->currentPressure = source.Current.Pressure;
  record->currentOilRate = source.Current.OilRate;
  record->currentWaterRate = source.Current.WaterRate;
  record->currentGasRate = source.Current.GasRate;
  return 0;
}

void CExtModel::FillInflowRecord(const Source& source, _tGetSetData& record) const {
  record.gasGravity = source.GasGravity;
  record.oilGravity = UsableGravity(source.OilGravity, kDefaultOilGravity);
  record.waterGravity = UsableGravity(source.WaterGravity, kDefaultWaterGravity);
  const auto points =
      std::span(source.SimulatorIPR).first(std::min(source.SimulatorIPR.size(), kMaxInflowPoints));
  record.pointCount = static_cast<int32_t>(points.size());
  record.isShut = points.empty() ? 1 : 0;
  FillPoints(source, points, record);
  std::ranges::copy(source.PassThrough, record.passThrough);
  if (!Compositional) return;
  if (fluidRecord_ != nullptr) CopyFluidRecord(*fluidRecord_, record.fluid);
  FillCompositions(points, record);
}

// The state record is large and the library only reads it, so one is kept from well to well. A call
// that comes while the library is reading it, through a callback, makes its own.
void CExtModel::TransformInflow(const Source& source, _tGetSetData& record) {
  auto state = std::exchange(spareState_, nullptr);
  if (state == nullptr) state = std::make_unique<_tGetSetData>();
  state->size = sizeof *state;
  state->oilRate[0] = source.Current.OilRate;
  state->waterRate[0] = source.Current.WaterRate;
  state->gasRate[0] = source.Current.GasRate;
  const bool beforeFirstStep = CurrentElapsedDays == 0.0;
  state->pressure[0] = beforeFirstStep ? kFailedInterpolation : source.Current.Pressure;
  const std::string name = source.Name;  // a restart through a callback drops the source
  Inflow->TransformIPR(InflowHandle, name.c_str(), state.get(), &record);
  spareState_ = std::move(state);
}

int32_t CExtModel::SetOpPt(const _tGetSetData* record, ExtErrorBlock* err) {
  if (!HasSource(record->well)) return Fail(err, NoSuchWell("No.", record->well, "SetOpPt"));
  Source& source = Sources.Items[static_cast<size_t>(record->well)];
  source.RequestedStatus = record->isShut == 0 ? kOpen : ShutState(record->shutInCode);
  source.OnTimeFraction = 1.0 - record->downFraction;
  IPRPoint& point = source.OpPoint;
  point.Pressure = record->pressure[0];
  point.OilRate = record->oilRate[0];
  point.WaterRate = record->waterRate[0];
  point.GasRate = record->gasRate[0];
  point.Composition.clear();
  if (Compositional && source.SourceType == kGasInjector) {
    constexpr auto most = static_cast<int32_t>(kMaxComponents);
    const double* const fractions = record->moleFractions[0];
    point.Composition.assign(fractions,
                             fractions + std::clamp(record->fluid.componentCount, 0, most));
  }
  if (source.SourceType == kProducer) return 0;
  source.PointValue = record->pointValue[0];
  source.OilGravity = record->oilGravity;
  source.GasGravity = record->gasGravity;
  source.WaterGravity = record->waterGravity;
  std::ranges::copy(record->passThrough, source.PassThrough.begin());
  return 0;
}

}  // namespace gantry
