#include "fieldrun/case/vfp_table.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using enum Quantity;

constexpr double kGasUnits = 1000;  // of a table in one of a case: Mscf in MMscf, Sm3 in kSm3

/// The two values of an axis around a place, or beyond which it lies, and how far it is from the
/// first to the second.
struct Interval {
  size_t first = 0;
  double part = 0;
};

Interval Around(const std::vector<double>& values, double place) {
  if (values.size() < 2) return {};
  const auto above = std::lower_bound(values.begin() + 1, values.end() - 1, place);
  const auto first = above - 1;
  return {static_cast<size_t>(first - values.begin()), (place - *first) / (*above - *first)};
}

Rates InUnits(const Rates& rates, UnitSystem units) {
  return {FromField(rates.oil, kLiquidRate, units), FromField(rates.water, kLiquidRate, units),
          kGasUnits * FromField(rates.gas, kGasRate, units)};
}

double Absolute(double gauge, UnitSystem units) {
  return units == UnitSystem::kMetric ? FromField(gauge, kGaugePressure, units)
                                      : gauge + kAtmosphere;
}

double Gauge(double absolute, UnitSystem units) {
  return units == UnitSystem::kMetric ? ToField(absolute, kGaugePressure, units)
                                      : absolute - kAtmosphere;
}

}  // namespace

std::array<double, VfpTable::kAxes> VfpTable::Place(double headPressure, double artificialLift,
                                                    const Rates& rates) const {
  const Rates own = InUnits(rates, units);
  std::array<double, kAxes> place{};
  for (size_t i = 0; i < kAxes; ++i) {
    if (axes[i].of != nullptr) place[i] = axes[i].of(own);
  }
  place[kHead] = Absolute(headPressure, units);
  place[kLift] = artificialLift;
  return place;
}

double VfpTable::FootPressure(double headPressure, double artificialLift,
                              const Rates& rates) const {
  const std::array<double, kAxes> place = Place(headPressure, artificialLift, rates);
  std::array<Interval, kAxes> intervals;
  for (size_t i = 0; i < kAxes; ++i) intervals[i] = Around(axes[i].values, place[i]);
  double sum = 0;
  // Each bit of a corner tells which of the two values of an axis it is at.
  for (unsigned corner = 0; corner < 1U << kAxes; ++corner) {
    double weight = 1;
    size_t index = 0;
    for (size_t i = kAxes; i-- > 0;) {
      const bool isSecond = (corner >> i & 1U) != 0;
      weight *= isSecond ? intervals[i].part : 1 - intervals[i].part;
      const size_t at = intervals[i].first + (isSecond ? 1 : 0);
      index = index * axes[i].values.size() + std::min(at, axes[i].values.size() - 1);
    }
    if (weight != 0) sum += weight * pressures[index];
  }
  return Gauge(sum, units);
}

std::string VfpTable::BeyondAxes(double headPressure, double artificialLift,
                                 const Rates& rates) const {
  constexpr double kTolerance = 1e-6;
  const std::array<double, kAxes> place = Place(headPressure, artificialLift, rates);
  std::string text;
  for (size_t i = 0; i < kAxes; ++i) {
    const std::vector<double>& values = axes[i].values;
    const double slack = kTolerance * (std::abs(values.back()) + std::abs(values.front()));
    const bool isWithin = place[i] >= values.front() - slack && place[i] <= values.back() + slack;
    if (values.size() < 2 || isWithin) continue;
    text += fmt::format("{}{} {:.4g} ({:g} to {:g})", text.empty() ? "" : ", ", axes[i].name,
                        place[i], values.front(), values.back());
  }
  return text;
}

}  // namespace gantry::fieldrun
