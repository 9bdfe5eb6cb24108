#include "tanksim/equation_of_state.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "tanksim/constants.h"

namespace gantry::simulator {

namespace {

constexpr int kMostSubstitutions = 300;
constexpr int kPatientSubstitutions = 20;  // before a share far beyond 0 to 1 settles it
constexpr double kConverged = 1e-13;
constexpr double kTrivial = 1e-4;  // sum of squares of ln K at which both phases are one

double Square(double value) { return value * value; }

double Rankine(double fahrenheit) { return fahrenheit + kFahrenheitToRankine; }

struct Roots {
  double smallest;
  double largest;
};

/// The real roots of z^3 + a z^2 + b z + c (Press and others, Numerical Recipes, section 5.6).
Roots SolveCubic(double a, double b, double c) {
  const double q = (a * a - 3.0 * b) / 9.0;
  const double r = (2.0 * a * a * a - 9.0 * a * b + 27.0 * c) / 54.0;
  if (r * r < q * q * q) {
    const double theta = std::acos(std::clamp(r / std::sqrt(q * q * q), -1.0, 1.0));
    const double size = -2.0 * std::sqrt(q);
    std::array<double, 3> roots{};
    for (size_t i = 0; i < 3; ++i) {
      const double turn = 2.0 * std::numbers::pi * (static_cast<double>(i) - 1.0);
      roots[i] = size * std::cos((theta + turn) / 3.0) - a / 3.0;
    }
    return {*std::ranges::min_element(roots), *std::ranges::max_element(roots)};
  }
  const double s = -std::copysign(std::cbrt(std::abs(r) + std::sqrt(r * r - q * q * q)), r);
  const double root = s + (s == 0.0 ? 0.0 : q / s) - a / 3.0;
  return {root, root};
}

/// The vapour share that satisfies Rachford and Rice (1952), between the poles around 0 to 1.
double VapourShare(const std::vector<double>& fractions, const std::vector<double>& ratios) {
  const auto [least, most] = std::ranges::minmax(ratios);
  double low = 1.0 / (1.0 - most);
  double high = 1.0 / (1.0 - least);
  double share = 0.5;
  for (int i = 0; i < 100; ++i) {
    double value = 0.0;
    double slope = 0.0;
    for (size_t k = 0; k < fractions.size(); ++k) {
      const double excess = ratios[k] - 1.0;
      const double term = excess / (1.0 + share * excess);
      value += fractions[k] * term;
      slope -= fractions[k] * term * term;
    }
    (value > 0.0 ? low : high) = share;
    double next = share - value / slope;
    if (!(next > low && next < high)) next = 0.5 * (low + high);
    if (std::abs(next - share) < 1e-14) return next;
    share = next;
  }
  return share;
}

void Normalise(std::vector<double>& fractions) {
  double sum = 0.0;
  for (const double fraction : fractions) sum += fraction;
  for (double& fraction : fractions) fraction /= sum;
}

}  // namespace

struct EquationOfState::Mixing {
  double pressure;
  double rt;                       ///< gas constant times temperature
  std::vector<double> attraction;  ///< a of each pair, row by row
  std::vector<double> covolume;
};

EquationOfState::EquationOfState(const EosData& data) : data_(data) {
  const bool isSoave = data.name == "SOAVE_REDLICH_KWONG";
  omegaA_ = isSoave ? 0.42748 : 0.45724;
  omegaB_ = isSoave ? 0.08664 : 0.07780;
  delta1_ = isSoave ? 1.0 : 1.0 + std::numbers::sqrt2;
  delta2_ = isSoave ? 0.0 : 1.0 - std::numbers::sqrt2;
}

double EquationOfState::Interaction(size_t i, size_t j) const {
  if (i == j) return 0.0;
  const size_t row = std::max(i, j);
  const size_t place = row * (row - 1) / 2 + std::min(i, j);
  return place < data_.binaryInteraction.size() ? data_.binaryInteraction[place] : 0.0;
}

EquationOfState::Mixing EquationOfState::Prepare(double pressure, double temperature) const {
  const size_t count = ComponentCount();
  const double t = Rankine(temperature);
  Mixing mixing{pressure, kGasConstant * t, std::vector<double>(count * count), {}};
  std::vector<double> root(count);
  const bool isSoave = delta1_ == 1.0;
  for (size_t i = 0; i < count; ++i) {
    const ComponentData& component = data_.components[i];
    const double tc = Rankine(component.criticalTemperature);
    const double w = component.acentricFactor;
    const double m =
        isSoave ? 0.480 + 1.574 * w - 0.176 * w * w : 0.37464 + 1.54226 * w - 0.26992 * w * w;
    const double alpha = Square(1.0 + m * (1.0 - std::sqrt(t / tc)));
    root[i] = std::sqrt(omegaA_ * Square(kGasConstant * tc) / component.criticalPressure * alpha);
    mixing.covolume.push_back(omegaB_ * kGasConstant * tc / component.criticalPressure);
  }
  for (size_t i = 0; i < count; ++i) {
    for (size_t j = 0; j < count; ++j) {
      mixing.attraction[i * count + j] = root[i] * root[j] * (1.0 - Interaction(i, j));
    }
  }
  return mixing;
}

EquationOfState::PhaseState EquationOfState::Solve(const Mixing& mixing,
                                                   const std::vector<double>& fractions,
                                                   Root root) const {
  const size_t count = fractions.size();
  double a = 0.0;
  double b = 0.0;
  std::vector<double> pull(count);
  for (size_t i = 0; i < count; ++i) {
    for (size_t j = 0; j < count; ++j) {
      pull[i] += fractions[j] * mixing.attraction[i * count + j];
    }
    a += fractions[i] * pull[i];
    b += fractions[i] * mixing.covolume[i];
  }
  const double bigA = a * mixing.pressure / Square(mixing.rt);
  const double bigB = b * mixing.pressure / mixing.rt;
  const double sum = delta1_ + delta2_;
  const double product = delta1_ * delta2_;
  const Roots roots =
      SolveCubic((sum - 1.0) * bigB - 1.0, bigA + product * bigB * bigB - sum * bigB * (bigB + 1.0),
                 -(bigA * bigB + product * bigB * bigB * (bigB + 1.0)));
  const auto fugacity = [&](double z, size_t i) {
    const double share = mixing.covolume[i] / b;
    return share * (z - 1.0) - std::log(z - bigB) -
           bigA / (bigB * (delta1_ - delta2_)) * (2.0 * pull[i] / a - share) *
               std::log((z + delta1_ * bigB) / (z + delta2_ * bigB));
  };
  const bool liquidExists = roots.smallest > bigB;
  double z = root == Root::kLiquid && liquidExists ? roots.smallest : roots.largest;
  if (root == Root::kStable && liquidExists && roots.smallest < roots.largest) {
    double difference = 0.0;  // of the Gibbs energies
    for (size_t i = 0; i < count; ++i) {
      difference += fractions[i] * (fugacity(roots.smallest, i) - fugacity(roots.largest, i));
    }
    if (difference < 0.0) z = roots.smallest;
  }
  PhaseState state{z, std::vector<double>(count)};
  for (size_t i = 0; i < count; ++i) state.logFugacity[i] = fugacity(z, i);
  return state;
}

PhaseResult EquationOfState::MakePhase(const Mixing& mixing, std::vector<double> fractions,
                                       double share, Root root) const {
  PhaseResult phase;
  phase.moleShare = share;
  phase.molarVolume = Solve(mixing, fractions, root).compressibility * mixing.rt / mixing.pressure;
  for (size_t i = 0; i < fractions.size(); ++i) {
    const ComponentData& component = data_.components[i];
    phase.molarVolume -= fractions[i] * component.volumeShift * mixing.covolume[i];
    phase.molarMass += fractions[i] * component.molecularWeight;
  }
  phase.fractions = std::move(fractions);
  return phase;
}

bool EquationOfState::IsLiquid(const PhaseResult& phase, double temperature) const {
  double volume = 0.0;
  double weighted = 0.0;
  for (size_t i = 0; i < phase.fractions.size(); ++i) {
    const ComponentData& component = data_.components[i];
    const double share = phase.fractions[i] * component.criticalVolume;
    volume += share;
    weighted += share * Rankine(component.criticalTemperature);
  }
  return Rankine(temperature) < weighted / volume && phase.molarVolume < volume;
}

std::vector<double> EquationOfState::WilsonRatios(double pressure, double temperature) const {
  std::vector<double> ratios;
  for (const ComponentData& component : data_.components) {
    ratios.push_back(
        component.criticalPressure / pressure *
        std::exp(5.37 * (1.0 + component.acentricFactor) *
                 (1.0 - Rankine(component.criticalTemperature) / Rankine(temperature))));
  }
  return ratios;
}

bool EquationOfState::Substitute(const Mixing& mixing, const std::vector<double>& fractions,
                                 Split& split) const {
  const size_t count = fractions.size();
  split.vapourShare = VapourShare(fractions, split.ratios);
  for (size_t i = 0; i < count; ++i) {
    split.liquid[i] = fractions[i] / (1.0 + split.vapourShare * (split.ratios[i] - 1.0));
    split.vapour[i] = split.ratios[i] * split.liquid[i];
  }
  Normalise(split.liquid);
  Normalise(split.vapour);
  const PhaseState inLiquid = Solve(mixing, split.liquid, Root::kLiquid);
  const PhaseState inVapour = Solve(mixing, split.vapour, Root::kVapour);
  double change = 0.0;
  double spread = 0.0;
  for (size_t i = 0; i < count; ++i) {
    const double logRatio = inLiquid.logFugacity[i] - inVapour.logFugacity[i];
    change += Square(logRatio - std::log(split.ratios[i]));
    spread += Square(logRatio);
    split.ratios[i] = std::exp(logRatio);
  }
  split.isTwoPhase = spread >= kTrivial && split.vapourShare > 0.0 && split.vapourShare < 1.0;
  return spread >= kTrivial && change >= kConverged;
}

FlashResult EquationOfState::Flash(const std::vector<double>& fractions, double pressure,
                                   double temperature) const {
  const Mixing mixing = Prepare(pressure, temperature);
  Split split;
  split.ratios = WilsonRatios(pressure, temperature);
  split.liquid.resize(fractions.size());
  split.vapour.resize(fractions.size());
  for (int step = 0; step < kMostSubstitutions; ++step) {
    const auto [least, most] = std::ranges::minmax(split.ratios);
    if (least >= 1.0 || most <= 1.0) {
      split.isTwoPhase = false;
      break;
    }
    if (!Substitute(mixing, fractions, split)) break;
    const bool isFarAway = split.vapourShare < -1.0 || split.vapourShare > 2.0;
    if (isFarAway && step > kPatientSubstitutions) break;
  }
  FlashResult result;
  if (split.isTwoPhase) {
    const double share = split.vapourShare;
    result.liquid = MakePhase(mixing, std::move(split.liquid), 1.0 - share, Root::kLiquid);
    result.vapour = MakePhase(mixing, std::move(split.vapour), share, Root::kVapour);
    return result;
  }
  PhaseResult only = MakePhase(mixing, fractions, 1.0, Root::kStable);
  (IsLiquid(only, temperature) ? result.liquid : result.vapour) = std::move(only);
  return result;
}

double EquationOfState::Viscosity(const PhaseResult& phase, double temperature) const {
  constexpr double kKelvinPerRankine = 1.0 / 1.8;
  constexpr double kAtmospherePerPsi = 1.0 / kStandardPressure;
  double dilute = 0.0;
  double weights = 0.0;
  double tc = 0.0;
  double pc = 0.0;
  double vc = 0.0;
  for (size_t i = 0; i < phase.fractions.size(); ++i) {
    const ComponentData& component = data_.components[i];
    const double kelvin = Rankine(component.criticalTemperature) * kKelvinPerRankine;
    const double atmospheres = component.criticalPressure * kAtmospherePerPsi;
    const double reduced = Rankine(temperature) / Rankine(component.criticalTemperature);
    const double inverse = std::pow(kelvin, 1.0 / 6.0) / (std::sqrt(component.molecularWeight) *
                                                          std::pow(atmospheres, 2.0 / 3.0));
    const double alone = reduced < 1.5
                             ? 34e-5 * std::pow(reduced, 0.94) / inverse
                             : 17.78e-5 * std::pow(4.58 * reduced - 1.67, 0.625) / inverse;
    const double weight = phase.fractions[i] * std::sqrt(component.molecularWeight);
    dilute += weight * alone;
    weights += weight;
    tc += phase.fractions[i] * kelvin;
    pc += phase.fractions[i] * atmospheres;
    vc += phase.fractions[i] * component.criticalVolume;
  }
  dilute /= weights;
  const double inverse =
      std::pow(tc, 1.0 / 6.0) / (std::sqrt(phase.molarMass) * std::pow(pc, 2.0 / 3.0));
  const double reduced = std::min(3.5, vc / phase.molarVolume);
  const double dense =
      0.1023 +
      reduced * (0.023364 + reduced * (0.058533 + reduced * (-0.040758 + reduced * 0.0093324)));
  return dilute + (Square(Square(dense)) - 1e-4) / inverse;
}

}  // namespace gantry::simulator
