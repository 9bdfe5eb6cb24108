#include "tanksim/tank.h"

#include <algorithm>
#include <cmath>

namespace gantry::simulator {

namespace {

/// Oil is at its bubble point from this share of it down: what a calculation leaves between two
/// equal pressures differs from one mathematical library to the next.
constexpr double kBubblePointShare = 1.0 - 1e-6;

}  // namespace

Tank::Tank(const TankData& data, const ReservoirFluid& fluid, const RockFluid& rockFluid)
    : data_(&data),
      fluid_(&fluid),
      rockFluid_(&rockFluid),
      now_({data.initial.pressure, data.initial.pressure, fluid.Fill(data.initial)}) {
  referencePoreVolume_ = data.initial.poreVolume;
  referencePoreVolume_ *= data.initial.poreVolume / PoreVolume(now_.pressure);
  state_ = fluid_->State(now_.contents, now_.pressure, Temperature());
  initialWaterSaturation_ = state_.waterVolume / state_.Volume();
  initialGasSaturation_ = state_.gasVolume / state_.Volume();
  referenceOilMobility_ = rockFluid_->LargestOil() / state_.oilViscosity;
  referenceGasMobility_ =
      rockFluid_->At(rockFluid_->ConnateWater(), rockFluid_->LargestGasSaturation()).gas /
      state_.gasViscosity;
  if (data_->hasFront) PrepareFronts();
  Refresh();
}

void Tank::PrepareFronts() {
  const auto gasFlow = [this](double saturation) {
    const PhaseInflow mobility = MobilityAt(initialWaterSaturation_, saturation);
    return mobility.vapour / std::max(1e-30, mobility.vapour + mobility.liquid);
  };
  const auto waterFlow = [this](double saturation) {
    const PhaseInflow mobility = MobilityAt(saturation, initialGasSaturation_);
    return mobility.water / std::max(1e-30, mobility.water + mobility.liquid);
  };
  const double largestGas =
      std::min(rockFluid_->LargestGasSaturation(), 1.0 - initialWaterSaturation_);
  gasFront_ = Displacement(gasFlow, initialGasSaturation_, largestGas, data_->gasSweep);
  waterFront_ = Displacement(waterFlow, initialWaterSaturation_,
                             rockFluid_->LargestWaterSaturation(), data_->waterSweep);
}

double Tank::PoreVolume(double pressure) const {
  return referencePoreVolume_ *
         std::exp(data_->rockCompressibility * (pressure - data_->rockReferencePressure));
}

PhaseInflow Tank::MobilityAt(double waterSaturation, double gasSaturation) const {
  const RelativePermeability relative = rockFluid_->At(waterSaturation, gasSaturation);
  return {relative.oil / state_.oilViscosity, relative.gas / state_.gasViscosity,
          relative.water / state_.waterViscosity};
}

PhaseInflow Tank::MobilityBehindFronts(double waterSaturation, double gasSaturation) const {
  FrontView water = waterFront_.At(waterSaturation);
  FrontView gas = gasFront_.At(gasSaturation);
  const double total = std::max(1.0, water.sweptFraction + gas.sweptFraction);
  water.sweptFraction /= total;
  gas.sweptFraction /= total;
  // Parallel layers towards the well: flooded by water, swept by gas, and as they were.
  const struct {
    double share = 0.0;
    PhaseInflow mobility;
  } layers[] = {
      {water.sweptFraction, MobilityAt(water.saturation, initialGasSaturation_)},
      {gas.sweptFraction, MobilityAt(initialWaterSaturation_, gas.saturation)},
      {1.0 - water.sweptFraction - gas.sweptFraction,
       MobilityAt(initialWaterSaturation_, initialGasSaturation_)},
  };
  PhaseInflow sum;
  for (const auto& layer : layers) {
    sum.liquid += layer.share * layer.mobility.liquid;
    sum.vapour += layer.share * layer.mobility.vapour;
    sum.water += layer.share * layer.mobility.water;
  }
  return sum;
}

void Tank::Refresh() {
  state_ = fluid_->State(now_.contents, now_.pressure, Temperature());
  const double waterSaturation = state_.waterVolume / state_.Volume();
  const double gasSaturation = state_.gasVolume / state_.Volume();
  mobility_ = data_->hasFront ? MobilityBehindFronts(waterSaturation, gasSaturation)
                              : MobilityAt(waterSaturation, gasSaturation);
  if (state_.oilVolume <= 0.0) mobility_.liquid = 0.0;
  if (state_.gasVolume <= 0.0) mobility_.vapour = 0.0;
}

Inflow Tank::InflowAt(double pressure) const {
  if (mobility_.liquid <= 0.0) return {pressure, pressure, Inflow::kDryGasCurvature};
  const bool isSaturated = state_.bubblePoint >= kBubblePointShare * now_.pressure;
  const double bend = isSaturated ? pressure : std::min(pressure, state_.bubblePoint);
  return {pressure, bend, Inflow::kVogelCurvature};
}

double Tank::AquiferInflux(double days, double pressure) const {
  if (!data_->aquifer) return 0.0;
  const AquiferData& aquifer = *data_->aquifer;
  const double capacity = aquifer.volume * aquifer.compressibility;  // rb/psi
  // A step against a constant tank pressure (Fetkovich 1971, equation 12).
  return capacity * (now_.aquiferPressure - pressure) *
         (1.0 - std::exp(-aquifer.productivityIndex * days / capacity));
}

Contents Tank::ContentsAfter(const TankFlow& flow, double days, double pressure) const {
  Contents after = now_.contents;
  for (size_t i = 0; i < after.hydrocarbons.size(); ++i) {
    double& amount = after.hydrocarbons[i];
    amount -= days * flow.liquid * state_.liquid.hydrocarbons[i];
    amount -= days * flow.vapour * state_.vapour.hydrocarbons[i];
    if (!flow.injectedHydrocarbons.empty()) amount += days * flow.injectedHydrocarbons[i];
    amount = std::max(0.0, amount);
  }
  const double influx = AquiferInflux(days, pressure) / fluid_->WaterFormationFactor(pressure);
  after.water = std::max(0.0, after.water + days * (flow.injectedWater - flow.water) + influx);
  return after;
}

double Tank::ExcessVolume(const TankFlow& flow, double days, double pressure) const {
  return fluid_->Volume(ContentsAfter(flow, days, pressure), pressure, Temperature()) -
         PoreVolume(pressure);
}

void Tank::Advance(const TankFlow& flow, double days, double pressure) {
  now_.contents = ContentsAfter(flow, days, pressure);
  if (data_->aquifer) {
    const double capacity = data_->aquifer->volume * data_->aquifer->compressibility;
    now_.aquiferPressure -= AquiferInflux(days, pressure) / capacity;
  }
  now_.pressure = pressure;
  Refresh();
  if (!data_->initial.gasRedissolves) {
    now_.contents.dissolvedGasLimit =
        std::min(now_.contents.dissolvedGasLimit, state_.dissolvedGas);
  }
}

void Tank::GoTo(TankMoment moment) {
  now_ = std::move(moment);
  Refresh();
}

}  // namespace gantry::simulator
