#include "tanksim/black_oil.h"

#include <algorithm>
#include <cmath>

#include "tanksim/constants.h"

namespace gantry::simulator {

namespace {

std::vector<double> Reciprocals(std::vector<double> values) {
  for (double& value : values) value = 1.0 / value;
  return values;
}

}  // namespace

BlackOil::BlackOil(const BlackOilData& data)
    : ReservoirFluid(data.water),
      dissolvedGas_(data.oilPressure, data.dissolvedGas, LookupTable::Beyond::kLastSlope),
      bubblePoint_(dissolvedGas_.Inverse()),
      oilFactor_(data.oilPressure, data.oilFactor, LookupTable::Beyond::kLastSlope),
      oilViscosity_(data.oilPressure, data.oilViscosity),
      gasExpansion_(data.gasPressure, Reciprocals(data.gasFactor), LookupTable::Beyond::kLastSlope),
      gasViscosity_(data.gasPressure, data.gasViscosity),
      oilCompressibility_(data.oilCompressibility),
      oilViscosityGradient_(data.oilViscosityGradient),
      oilDensity_(data.oilDensity),
      gasDensity_(data.gasDensity) {}

double BlackOil::OilFactor(double pressure, double dissolvedGas) const {
  // Above its bubble point the oil shrinks with a constant compressibility (McCain, equation 11-4).
  const double bubblePoint = std::min(pressure, bubblePoint_.At(dissolvedGas));
  return oilFactor_.At(bubblePoint) * std::exp(-oilCompressibility_ * (pressure - bubblePoint));
}

double BlackOil::DissolvedGas(const Contents& contents, double pressure) const {
  const double oil = contents.hydrocarbons[0];
  if (oil <= 0.0) return 0.0;
  const double present = contents.hydrocarbons[1] / oil;
  return std::min({present, contents.dissolvedGasLimit, dissolvedGas_.At(pressure)});
}

Contents BlackOil::Fill(const InitialState& initial) const {
  const double dissolved = std::min(initial.dissolvedGas, dissolvedGas_.At(initial.pressure));
  const double oilSaturation = std::max(0.0, 1.0 - initial.waterSaturation - initial.gasSaturation);
  const double oil = initial.poreVolume * oilSaturation / OilFactor(initial.pressure, dissolved);
  const double freeGas = initial.poreVolume * initial.gasSaturation / GasFactor(initial.pressure);
  Contents contents;
  contents.hydrocarbons = {oil, freeGas + oil * dissolved};
  contents.water =
      initial.poreVolume * initial.waterSaturation / WaterFormationFactor(initial.pressure);
  if (!initial.gasRedissolves) contents.dissolvedGasLimit = dissolved;
  return contents;
}

double BlackOil::Volume(const Contents& contents, double pressure, double) const {
  const double oil = contents.hydrocarbons[0];
  const double dissolved = DissolvedGas(contents, pressure);
  const double freeGas = contents.hydrocarbons[1] - oil * dissolved;
  return oil * OilFactor(pressure, dissolved) + freeGas * GasFactor(pressure) +
         contents.water * WaterFormationFactor(pressure);
}

FluidState BlackOil::State(const Contents& contents, double pressure, double) const {
  FluidState state;
  const double oil = contents.hydrocarbons[0];
  state.dissolvedGas = DissolvedGas(contents, pressure);
  state.bubblePoint = std::min(pressure, bubblePoint_.At(state.dissolvedGas));
  const double oilFactor = OilFactor(pressure, state.dissolvedGas);
  const double gasFactor = GasFactor(pressure);
  const double freeGas = contents.hydrocarbons[1] - oil * state.dissolvedGas;
  state.oilVolume = oil * oilFactor;
  state.gasVolume = std::max(0.0, freeGas * gasFactor);
  state.waterFormationFactor = WaterFormationFactor(pressure);
  state.waterVolume = contents.water * state.waterFormationFactor;
  state.oilViscosity = oilViscosity_.At(state.bubblePoint) *
                       (1.0 + oilViscosityGradient_ * (pressure - state.bubblePoint));
  state.gasViscosity = gasViscosity_.At(pressure);
  state.waterViscosity = Water().viscosity;
  state.liquid.oil = 1.0 / oilFactor;
  state.liquid.gas = state.dissolvedGas / oilFactor;
  state.vapour.gas = 1.0 / gasFactor;
  for (PhaseStream* stream : {&state.liquid, &state.vapour}) {
    stream->oilMass = stream->oil * oilDensity_ * kCubicFeetPerBarrel;
    stream->gasMass = stream->gas * gasDensity_ * kCubicFeetPerMscf;
    stream->hydrocarbons = {stream->oil, stream->gas};
  }
  return state;
}

InjectedGas BlackOil::Injected(const std::vector<double>&, double pressure, double) const {
  return {{0.0, 1.0}, GasFactor(pressure), gasDensity_ * kCubicFeetPerMscf};
}

}  // namespace gantry::simulator
