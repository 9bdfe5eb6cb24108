#include "tanksim/compositional_fluid.h"

#include <algorithm>
#include <numeric>

#include "tanksim/constants.h"

namespace gantry::simulator {

namespace {

/// Volume of a lb-mol of gas at standard conditions.
constexpr double kMscfPerMole = kGasConstant * (kStandardTemperature + kFahrenheitToRankine) /
                                kStandardPressure / kCubicFeetPerMscf;

double Sum(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

std::vector<double> Fractions(const Amounts& moles, double total) {
  std::vector<double> fractions = moles;
  for (double& fraction : fractions) fraction /= total;
  return fractions;
}

std::vector<double> Scaled(std::vector<double> values, double factor) {
  for (double& value : values) value *= factor;
  return values;
}

/// ft3 of a lb-mol of the mixture, all phases together.
double MolarVolume(const FlashResult& flash) {
  return flash.liquid.moleShare * flash.liquid.molarVolume +
         flash.vapour.moleShare * flash.vapour.molarVolume;
}

}  // namespace

Contents CompositionalFluid::Fill(const InitialState& initial) const {
  const FlashResult flash = eos_.Flash(initial.composition, initial.pressure, initial.temperature);
  const double volume = initial.poreVolume * (1.0 - initial.waterSaturation);
  Contents contents;
  contents.hydrocarbons =
      Scaled(initial.composition, volume * kCubicFeetPerBarrel / MolarVolume(flash));
  contents.water =
      initial.poreVolume * initial.waterSaturation / WaterFormationFactor(initial.pressure);
  return contents;
}

double CompositionalFluid::Volume(const Contents& contents, double pressure,
                                  double temperature) const {
  const double water = contents.water * WaterFormationFactor(pressure);
  const double moles = Sum(contents.hydrocarbons);
  if (moles <= 0.0) return water;
  const FlashResult flash =
      eos_.Flash(Fractions(contents.hydrocarbons, moles), pressure, temperature);
  return water + moles * MolarVolume(flash) / kCubicFeetPerBarrel;
}

PhaseStream CompositionalFluid::Stream(const PhaseResult& phase) const {
  PhaseStream stream;
  const double moles = kCubicFeetPerBarrel / phase.molarVolume;  // in a reservoir barrel
  stream.hydrocarbons = Scaled(phase.fractions, moles);
  const FlashResult surface = eos_.Flash(phase.fractions, kStandardPressure, kStandardTemperature);
  const double oilMoles = moles * surface.liquid.moleShare;
  const double gasMoles = moles * surface.vapour.moleShare;
  stream.oil = oilMoles * surface.liquid.molarVolume / kCubicFeetPerBarrel;
  stream.gas = gasMoles * kMscfPerMole;
  stream.oilMass = oilMoles * surface.liquid.molarMass;
  stream.gasMass = gasMoles * surface.vapour.molarMass;
  stream.oilMoles = Scaled(surface.liquid.fractions, oilMoles);
  stream.gasMoles = Scaled(surface.vapour.fractions, gasMoles);
  stream.oilMoles.resize(eos_.ComponentCount());
  stream.gasMoles.resize(eos_.ComponentCount());
  return stream;
}

double CompositionalFluid::BubblePoint(const std::vector<double>& fractions, double pressure,
                                       double temperature) const {
  double low = kStandardPressure;
  double high = pressure;
  while (high - low > 0.002 * high) {
    const double middle = 0.5 * (low + high);
    const bool hasGas = eos_.Flash(fractions, middle, temperature).vapour.moleShare > 0.0;
    (hasGas ? low : high) = middle;
  }
  return low;
}

FluidState CompositionalFluid::State(const Contents& contents, double pressure,
                                     double temperature) const {
  FluidState state;
  state.waterFormationFactor = WaterFormationFactor(pressure);
  state.waterVolume = contents.water * state.waterFormationFactor;
  state.waterViscosity = Water().viscosity;
  state.bubblePoint = pressure;
  for (PhaseStream* stream : {&state.liquid, &state.vapour}) {
    stream->hydrocarbons.resize(eos_.ComponentCount());
    stream->oilMoles.resize(eos_.ComponentCount());
    stream->gasMoles.resize(eos_.ComponentCount());
  }
  const double moles = Sum(contents.hydrocarbons);
  if (moles <= 0.0) return state;
  const std::vector<double> fractions = Fractions(contents.hydrocarbons, moles);
  const FlashResult flash = eos_.Flash(fractions, pressure, temperature);
  if (flash.liquid.moleShare > 0.0) {
    state.oilVolume =
        moles * flash.liquid.moleShare * flash.liquid.molarVolume / kCubicFeetPerBarrel;
    state.oilViscosity = eos_.Viscosity(flash.liquid, temperature);
    state.liquid = Stream(flash.liquid);
    if (state.liquid.oil > 0.0) state.dissolvedGas = state.liquid.gas / state.liquid.oil;
  }
  if (flash.vapour.moleShare > 0.0) {
    state.gasVolume =
        moles * flash.vapour.moleShare * flash.vapour.molarVolume / kCubicFeetPerBarrel;
    state.gasViscosity = eos_.Viscosity(flash.vapour, temperature);
    state.vapour = Stream(flash.vapour);
  } else {
    state.bubblePoint = BubblePoint(fractions, pressure, temperature);
  }
  return state;
}

InjectedGas CompositionalFluid::Injected(const std::vector<double>& composition, double pressure,
                                         double temperature) const {
  const double moles = 1.0 / kMscfPerMole;
  const FlashResult flash = eos_.Flash(composition, pressure, temperature);
  InjectedGas gas;
  gas.hydrocarbons = Scaled(composition, moles);
  gas.reservoirVolume = moles * MolarVolume(flash) / kCubicFeetPerBarrel;
  gas.mass = moles * (flash.liquid.moleShare * flash.liquid.molarMass +
                      flash.vapour.moleShare * flash.vapour.molarMass);
  return gas;
}

}  // namespace gantry::simulator
