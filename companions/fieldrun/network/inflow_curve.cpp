#include "fieldrun/network/inflow_curve.h"

#include <algorithm>
#include <cmath>

namespace gantry::fieldrun {
namespace {

constexpr double kMissing = -9999.0;  // the mark for a value not set lies below it
constexpr double kFlows = 1e-5;       // what counts as a rate at all

bool IsUsable(const InflowPoint& point) {
  const auto isUsable = [](double value) {
    return std::isfinite(value) && value > kMissing && value < 1e30;
  };
  return isUsable(point.pressure) && isUsable(point.rates.oil) && isUsable(point.rates.water) &&
         isUsable(point.rates.gas);
}

void DropBackflow(Rates& rates) {
  rates.oil = std::max(rates.oil, 0.0);
  rates.water = std::max(rates.water, 0.0);
  rates.gas = std::max(rates.gas, 0.0);
}

// The pressure at which the straight line through the two points nearest to shut has no flow.
double ShutPressure(const InflowPoint& nearest, const InflowPoint& next) {
  const double rise = next.rates.Size() - nearest.rates.Size();
  if (rise <= 0) return nearest.pressure;
  const double slope = (nearest.pressure - next.pressure) / rise;
  return nearest.pressure + slope * nearest.rates.Size();
}

}  // namespace

InflowCurve::InflowCurve(std::vector<InflowPoint> points, bool isProducer) {
  std::erase_if(points, [](const InflowPoint& point) { return !IsUsable(point); });
  for (InflowPoint& point : points) DropBackflow(point.rates);
  // Producers open towards lower pressures, injectors towards higher ones.
  const double direction = isProducer ? -1 : 1;
  std::sort(points.begin(), points.end(), [&](const InflowPoint& a, const InflowPoint& b) {
    if (a.pressure != b.pressure) return direction * a.pressure < direction * b.pressure;
    return a.rates.Size() < b.rates.Size();
  });
  const bool flows = std::any_of(points.begin(), points.end(), [](const InflowPoint& point) {
    return point.rates.Liquid() > kFlows || point.rates.gas > kFlows;
  });
  if (points.size() < 2 || !flows) return;
  if (points.front().rates.Size() > 0) {
    points.insert(points.begin(), {ShutPressure(points[0], points[1]), {}});
  }
  points_ = std::move(points);
}

InflowPoint InflowCurve::At(double opening) const {
  const double place = std::clamp(opening, 0.0, FullOpening());
  const size_t first = std::min(static_cast<size_t>(place), points_.size() - 2);
  const double part = place - static_cast<double>(first);
  const InflowPoint& from = points_[first];
  const InflowPoint& to = points_[first + 1];
  InflowPoint point{std::lerp(from.pressure, to.pressure, part), (1 - part) * from.rates};
  point.rates += part * to.rates;
  return point;
}

}  // namespace gantry::fieldrun
