#pragma once

#include <cstddef>
#include <vector>

#include "fieldrun/case/rates.h"

namespace gantry::fieldrun {

struct InflowPoint {
  double pressure = 0;  ///< psig
  Rates rates;
};

/// The inflow of a well as a path from shut to as open as the reservoir allows. A place on it is
/// its opening: 0 is shut, FullOpening() the point of the highest rate, and between two points
/// pressure and rates run straight. Whatever holds a well back comes down to a largest opening.
class InflowCurve {
 public:
  /// Takes the points of a table in any order. Points with a missing number are dropped, backflow
  /// counts as none, and the shut end is found by carrying on the two points nearest to it.
  InflowCurve(std::vector<InflowPoint> points, bool isProducer);

  /// True when no point flows: there is nothing to open.
  bool IsDead() const { return points_.size() < 2; }
  double FullOpening() const { return static_cast<double>(points_.size()) - 1; }
  InflowPoint At(double opening) const;

  /// The largest opening up to which the quantity never exceeds `limit`, seen from the shut end.
  /// `quantity` is any function of an InflowPoint that runs straight between points.
  template <class Function>
  double LargestOpening(Function quantity, double limit) const;

  const std::vector<InflowPoint>& Points() const { return points_; }

 private:
  std::vector<InflowPoint> points_;
};

template <class Function>
double InflowCurve::LargestOpening(Function quantity, double limit) const {
  for (size_t i = 0; i < points_.size(); ++i) {
    const double here = quantity(points_[i]);
    if (here <= limit) continue;
    if (i == 0) return 0;
    const double before = quantity(points_[i - 1]);
    return static_cast<double>(i - 1) + (limit - before) / (here - before);
  }
  return FullOpening();
}

}  // namespace gantry::fieldrun
