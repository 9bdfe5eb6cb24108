#include <algorithm>
#include <cmath>
#include <optional>

#include "fieldrun/network/network.h"

namespace gantry::fieldrun {
namespace {

constexpr double kSmallestOpening = 1e-3;  // of the way from shut to the first flowing point
constexpr int kProbesPerSegment = 4;

struct RateLimit {
  const char* name;
  std::optional<double> WellSpec::*limit;
  double (*rate)(const InflowPoint&);
};

double OilOf(const InflowPoint& point) { return point.rates.oil; }
double WaterOf(const InflowPoint& point) { return point.rates.water; }
double LiquidOf(const InflowPoint& point) { return point.rates.Liquid(); }
double GasOf(const InflowPoint& point) { return point.rates.gas; }

constexpr RateLimit kProducerLimits[] = {
    {"oil limit", &WellSpec::maxOil, OilOf},
    {"water limit", &WellSpec::maxWater, WaterOf},
    {"liquid limit", &WellSpec::maxLiquid, LiquidOf},
    {"gas limit", &WellSpec::maxGas, GasOf},
};

constexpr RateLimit kInjectorTargets[] = {
    {"water rate", &WellSpec::waterRate, WaterOf},
    {"gas rate", &WellSpec::gasRate, GasOf},
};

// How far the inflow at an opening lies above what a producer's tubing needs, and below what an
// injector's gives; negative: it can't flow so.
class LiftSurplus {
 public:
  explicit LiftSurplus(const NetworkWell& well) : well_(well) {
    if (well.lift == nullptr && !well.tubing->table) {
      column_.emplace(*well.tubing, well.gravities);
    }
  }

  double operator()(double opening) const {
    const InflowPoint point = well_.curve.At(opening);
    const double surplus = point.pressure - FootPressure(point.rates);
    return well_.spec->IsProducer() ? surplus : -surplus;
  }

  double FootPressure(const Rates& rates) const {
    if (well_.tubing->table) {
      return well_.tubing->table->FootPressure(well_.manifoldPressure, well_.artificialLift, rates);
    }
    return column_ ? column_->FootPressure(well_.manifoldPressure, rates)
                   : well_.lift->FootPressure(rates);
  }

 private:
  const NetworkWell& well_;
  std::optional<TubingColumn> column_;
};

// Bisection with the secant's help (the Illinois method): `low` flows, `high` doesn't.
double MeetingPoint(const LiftSurplus& surplusAt, double low, double atLow, double high,
                    double atHigh) {
  for (int i = 0; i < 60 && high - low > 1e-9; ++i) {
    const double guess = std::isfinite(atLow - atHigh)
                             ? low + (high - low) * atLow / (atLow - atHigh)
                             : 0.5 * (low + high);
    const double surplus = surplusAt(guess);
    if (std::abs(surplus) < 1e-6) return guess;
    if (surplus > 0) {
      low = guess;
      atLow = surplus;
      atHigh *= 0.5;
    } else {
      high = guess;
      atHigh = surplus;
      atLow *= 0.5;
    }
  }
  return low;
}

// The widest opening that the tubing carries. Searched from full opening towards shut, so that of
// several meetings the stable one, at the highest rate, is taken. 0 when it carries none.
double OpeningByTubing(const NetworkWell& well) {
  const LiftSurplus surplusAt(well);
  double high = well.curve.FullOpening();
  double atHigh = surplusAt(high);
  if (atHigh >= 0) return high;
  const int probes = static_cast<int>(high) * kProbesPerSegment;
  for (int i = probes - 1; i >= 0; --i) {
    const double low = std::max(static_cast<double>(i) / kProbesPerSegment, kSmallestOpening);
    const double atLow = surplusAt(low);
    if (atLow >= 0) return MeetingPoint(surplusAt, low, atLow, high, atHigh);
    high = low;
    atHigh = atLow;
  }
  return 0;
}

void HoldBack(NetworkWell& well, double opening, const char* reason) {
  if (opening >= well.opening) return;
  well.opening = opening;
  well.limitedBy = reason;
}

void Shut(NetworkWell& well, const char* reason) {
  well.isOpen = false;
  well.opening = 0;
  well.limitedBy = reason;
}

template <size_t N>
void HoldRates(NetworkWell& well, const RateLimit (&limits)[N]) {
  for (const RateLimit& limit : limits) {
    const auto& value = well.spec->*(limit.limit);
    if (value) HoldBack(well, well.curve.LargestOpening(limit.rate, *value), limit.name);
  }
}

void SolveProducer(NetworkWell& well) {
  const WellSpec& spec = *well.spec;
  if (spec.minBottomHolePressure) {
    const auto drawdown = [](const InflowPoint& point) { return -point.pressure; };
    HoldBack(well, well.curve.LargestOpening(drawdown, -*spec.minBottomHolePressure),
             "minimum pressure");
  }
  HoldRates(well, kProducerLimits);
}

void SolveInjector(NetworkWell& well) {
  const auto pressure = [](const InflowPoint& point) { return point.pressure; };
  const WellSpec& spec = *well.spec;
  HoldRates(well, kInjectorTargets);
  if (spec.bottomHolePressure) {
    HoldBack(well, well.curve.LargestOpening(pressure, *spec.bottomHolePressure), "pressure");
  }
  if (spec.maxBottomHolePressure) {
    HoldBack(well, well.curve.LargestOpening(pressure, *spec.maxBottomHolePressure),
             "maximum pressure");
  }
}

}  // namespace

OperatingPoint NetworkWell::Point() const {
  OperatingPoint point{isOpen, 0, {}, limitedBy};
  if (curve.IsDead()) return point;
  const InflowPoint place = curve.At(opening);
  point.pressure = place.pressure;
  if (isOpen) point.rates = place.rates;
  return point;
}

void SolveWell(NetworkWell& well) {
  if (well.curve.IsDead()) return Shut(well, "no inflow");
  well.isOpen = true;
  well.opening = well.curve.FullOpening();
  well.limitedBy = "inflow";
  const bool isProducer = well.spec->IsProducer();
  if (well.tubing != nullptr) {
    HoldBack(well, OpeningByTubing(well), "tubing");
    if (well.opening <= 0) return Shut(well, isProducer ? "can't lift" : "can't inject");
  }
  if (isProducer) {
    SolveProducer(well);
  } else {
    SolveInjector(well);
  }
  if (well.isOpen && well.opening <= 0) Shut(well, "held at no rate");
}

std::vector<double> LiftAlong(const NetworkWell& well, const std::vector<InflowPoint>& points) {
  std::vector<double> lift;
  if (well.tubing == nullptr) return lift;
  const LiftSurplus tubing(well);
  for (const InflowPoint& point : points) {
    const bool flows = point.rates.Size() > 0;
    lift.push_back(flows ? tubing.FootPressure(point.rates) : kUnknownRates.oil);
  }
  return lift;
}

void ShutIfLoadedUp(NetworkWell& well) {
  constexpr double kTolerance = 1e-3;  // psi
  if (!well.isOpen || well.tubing == nullptr) return;
  if (LiftSurplus(well)(well.opening) < -kTolerance) Shut(well, "can't lift when held back");
}

}  // namespace gantry::fieldrun
