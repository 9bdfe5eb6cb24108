#include "tanksim/lookup_table.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace gantry::simulator {

LookupTable::LookupTable(std::vector<double> points, std::vector<double> values, Beyond beyond)
    : points_(std::move(points)), values_(std::move(values)), beyond_(beyond) {}

double LookupTable::At(double point) const {
  if (points_.size() == 1 || point <= points_.front()) return values_.front();
  if (point >= points_.back() && beyond_ == Beyond::kConstant) return values_.back();
  const auto above = std::upper_bound(points_.begin() + 1, points_.end() - 1, point);
  const auto i = static_cast<size_t>(above - points_.begin());
  const double part = (point - points_[i - 1]) / (points_[i] - points_[i - 1]);
  return values_[i - 1] + part * (values_[i] - values_[i - 1]);
}

}  // namespace gantry::simulator
