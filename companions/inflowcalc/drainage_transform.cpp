#include "inflowcalc/drainage_transform.h"

#include <algorithm>
#include <cmath>

namespace gantry::inflow {
namespace {

constexpr double kLeastDrawdown = 0.5;  // psi

/// Cuts a curve that starts at its limited end: the rows that lie past `limit` give way to one.
bool CutAtLimit(InflowRows& rows, double limit, bool isLowest) {
  const auto isInside = [=](const InflowRow& row) {
    return isLowest ? row.pressure >= limit : row.pressure <= limit;
  };
  const auto inside = std::ranges::find_if(rows, isInside);
  if (inside == rows.end()) return false;
  if (inside == rows.begin()) return true;

  InflowRow& outside = *std::prev(inside);
  const double fraction = (limit - outside.pressure) / (inside->pressure - outside.pressure);
  outside = RowBetween(outside, *inside, fraction);
  outside.pressure = limit;
  rows.erase(rows.begin(), std::prev(inside));
  return true;
}

}  // namespace

std::optional<double> RatioFromTest(double flowing, double block, double region) {
  if (IsMissing(flowing) || IsMissing(block) || IsMissing(region)) return std::nullopt;
  const double blockDrawdown = block - flowing;
  const double regionDrawdown = region - flowing;
  if (std::abs(blockDrawdown) < kLeastDrawdown || std::abs(regionDrawdown) < kLeastDrawdown)
    return std::nullopt;
  if (blockDrawdown * regionDrawdown < 0.0) return std::nullopt;
  return std::clamp(blockDrawdown / regionDrawdown, kLeastRatio, kGreatestRatio);
}

bool TransformToRegion(InflowRows& rows, double ratio, double currentRate) {
  const RateMeasure measure = MeasureOf(rows);
  if (!IsCurve(rows, measure)) return false;

  InflowRows moved = rows;
  const double pivotRate = std::clamp(currentRate, 0.0, HighestRate(rows, measure));
  const double pivot = PressureAt(rows, measure, pivotRate);
  for (InflowRow& row : moved) row.pressure = pivot + (row.pressure - pivot) / ratio;

  const bool startsAtLimit = RateOf(rows.front(), measure) >= RateOf(rows.back(), measure);
  const double limit = startsAtLimit ? rows.front().pressure : rows.back().pressure;
  const double other = startsAtLimit ? rows.back().pressure : rows.front().pressure;
  if (!startsAtLimit) std::ranges::reverse(moved);
  if (!CutAtLimit(moved, limit, limit <= other)) return false;
  if (!startsAtLimit) std::ranges::reverse(moved);
  rows = std::move(moved);
  return true;
}

}  // namespace gantry::inflow
