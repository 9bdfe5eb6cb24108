#include "fieldrun/network/tubing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "described_toml/calendar.h"
#include "wells/source.h"

namespace gantry::fieldrun {
namespace {

constexpr double kGravity = 32.174;  // lb ft / (lbf s2)
constexpr int kSegments = 20;

// Viscosities in cP. The friction factor feels them so weakly that one value each will do.
constexpr double kOilViscosity = 1.0;
constexpr double kWaterViscosity = 0.5;
constexpr double kGasViscosity = 0.015;

// Standing's oil volume factor with that much gas dissolved.
double OilVolumeFactor(const Gravities& gravities, double dissolved, double fahrenheit) {
  const double f = dissolved * std::sqrt(gravities.gas / gravities.oil) + 1.25 * fahrenheit;
  return 0.9759 + 0.00012 * std::pow(f, 1.2);
}

double FrictionFactor(double reynolds, double relativeRoughness) {
  if (reynolds < 2100) return 64 / std::max(reynolds, 1.0);
  const double term = std::log10(relativeRoughness / 3.7 + 5.74 / std::pow(reynolds, 0.9));
  return 0.25 / (term * term);
}

struct Mixture {
  double density;    // lb/ft3
  double flow;       // ft3/d
  double viscosity;  // cP
};

Mixture MixAt(const Gravities& gravities, const TubingPlace& place, const Rates& rates,
              double pressure) {
  const double gas = rates.gas * kCubicFeetOfMillion;
  const double capacity = rates.oil * place.DissolvedGas(gravities, pressure);
  const double dissolved = std::min(gas, capacity);
  const double perBarrel = rates.oil > 0 ? dissolved / rates.oil : 0;
  const double oilFlow =
      rates.oil * OilVolumeFactor(gravities, perBarrel, place.fahrenheit) * kCubicFeetOfBarrel;
  const double waterFlow = rates.water * kCubicFeetOfBarrel;
  const double gasFlow =
      (gas - dissolved) * 0.02827 * place.GasDeviation(pressure) * place.Rankine() / pressure;
  const double mass = (rates.oil * gravities.oil + rates.water * gravities.water) *
                          kCubicFeetOfBarrel * kWaterDensity +
                      gas * kAirDensity * gravities.gas;
  const double flow = oilFlow + waterFlow + gasFlow;
  const double viscosity =
      (oilFlow * kOilViscosity + waterFlow * kWaterViscosity + gasFlow * kGasViscosity) / flow;
  return {mass / flow, flow, viscosity};
}

// psi per foot along the hole.
double Gradient(const TubingSpec& tubing, const Mixture& mixture) {
  const double diameter = tubing.diameter / 12;
  const double area = std::numbers::pi / 4 * diameter * diameter;
  const double velocity = mixture.flow / toml_reader::kSecondsPerDay / area;
  const double reynolds = 1488 * mixture.density * velocity * diameter / mixture.viscosity;
  const double f = FrictionFactor(reynolds, tubing.roughness / tubing.diameter);
  const double friction = f * mixture.density * velocity * velocity / (2 * kGravity * diameter);
  const double cosine = tubing.depth / tubing.length.value_or(tubing.depth);
  return (mixture.density * cosine + friction) / 144;
}

}  // namespace

TubingPlace::TubingPlace(const Gravities& gravities, double temperature) : fahrenheit(temperature) {
  const double api = std::clamp(141.5 / gravities.oil - 131.5, 10.0, 60.0);
  solution = std::pow(10, 0.0125 * api - 0.00091 * fahrenheit);
  const double criticalTemperature = 169.2 + gravities.gas * (349.5 - 74.0 * gravities.gas);
  const double criticalPressure = 756.8 - gravities.gas * (131.0 + 3.6 * gravities.gas);
  const double tr = Rankine() / criticalTemperature;
  linear = 3.53 / std::pow(10, 0.9813 * tr) / criticalPressure;
  quadratic = 0.274 / std::pow(10, 0.8157 * tr) / (criticalPressure * criticalPressure);
}

// Papay's deviation factor with Sutton's pseudo-critical properties.
double TubingPlace::GasDeviation(double pressure) const {
  return std::clamp(1 + pressure * (quadratic * pressure - linear), 0.3, 2.0);
}

// Standing's dissolved gas of an oil that has more gas than it can hold.
double TubingPlace::DissolvedGas(const Gravities& gravities, double pressure) const {
  return gravities.gas * std::pow((pressure / 18.2 + 1.4) * solution, 1.2048);
}

TubingColumn::TubingColumn(const TubingSpec& tubing, const Gravities& gravities)
    : tubing_(tubing), gravities_(gravities) {
  for (int i = 0; i < 2 * kSegments; ++i) {
    const double part = 0.5 * i / kSegments;
    places_.emplace_back(gravities,
                         std::lerp(tubing.wellheadTemperature, tubing.bottomTemperature, part));
  }
}

double TubingColumn::FootPressure(double headPressure, const Rates& rates) const {
  if (rates.Size() <= 0) return std::numeric_limits<double>::infinity();
  const double segment = tubing_.length.value_or(tubing_.depth) / kSegments;
  const auto gradientAt = [&](double pressure, const TubingPlace& place) {
    return Gradient(tubing_, MixAt(gravities_, place, rates, pressure));
  };
  double pressure = std::max(headPressure + kAtmosphere, 1.0);
  for (size_t i = 0; i < places_.size(); i += 2) {
    const double middle = pressure + 0.5 * segment * gradientAt(pressure, places_[i]);
    pressure += segment * gradientAt(middle, places_[i + 1]);
  }
  return pressure - kAtmosphere;
}

}  // namespace gantry::fieldrun
