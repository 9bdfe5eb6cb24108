#include "tanksim/inflow.h"

#include <algorithm>
#include <cmath>

namespace gantry::simulator {

double Inflow::HydrocarbonDrawdown(double pressure) const {
  if (pressure >= reservoirPressure_) return 0.0;
  if (pressure >= bend_) return reservoirPressure_ - pressure;
  const double u = 1.0 - pressure / bend_;
  return reservoirPressure_ - bend_ + bend_ * (u - curvature_ * u * u);
}

double Inflow::WaterDrawdown(double pressure) const {
  return std::max(0.0, reservoirPressure_ - pressure);
}

double Inflow::PressureFor(double rate, double hydrocarbonIndex, double waterIndex) const {
  if (rate <= 0.0) return reservoirPressure_;
  const double index = hydrocarbonIndex + waterIndex;
  if (index <= 0.0) return 0.0;
  const double straight = reservoirPressure_ - rate / index;
  if (straight >= bend_) return std::max(0.0, straight);
  // Below the bend: bend (index u - hydrocarbonIndex curvature u^2) = what is left of the rate.
  const double rest = (rate - index * (reservoirPressure_ - bend_)) / bend_;
  const double discriminant = index * index - 4.0 * hydrocarbonIndex * curvature_ * rest;
  if (discriminant < 0.0) return 0.0;
  const double u = 2.0 * rest / (index + std::sqrt(discriminant));
  return u < 1.0 ? bend_ * (1.0 - u) : 0.0;
}

}  // namespace gantry::simulator
