#include "inflowcalc/inflow_rows.h"

#include <algorithm>
#include <cmath>

namespace gantry::inflow {
namespace {

constexpr double kNoRate = 0.00001;

int32_t BoundedCount(const _tGetSetData& record) {
  return std::clamp<int32_t>(record.pointCount, 0, EXT_MAX_INFLOW_POINTS);
}

bool IsGap(const _tGetSetData& record, int32_t i) {
  return IsMissing(record.pressure[i]) || IsMissing(record.oilRate[i]) ||
         IsMissing(record.waterRate[i]) || IsMissing(record.gasRate[i]);
}

template <class Values>
bool RunsOneWay(const InflowRows& rows, Values valueOf) {
  const auto rises = [&](const InflowRow& a, const InflowRow& b) {
    return valueOf(a) < valueOf(b);
  };
  const auto falls = [&](const InflowRow& a, const InflowRow& b) {
    return valueOf(a) > valueOf(b);
  };
  return std::ranges::is_sorted(rows, rises) || std::ranges::is_sorted(rows, falls);
}

}  // namespace

bool IsMissing(double value) {
  return !std::isfinite(value) || std::abs(value) >= EXT_FAILED_NUMBER || value == EXT_UNSET_NUMBER;
}

bool HasGaps(const _tGetSetData& record) {
  const int32_t count = BoundedCount(record);
  if (count != record.pointCount) return true;
  for (int32_t i = 0; i < count; ++i) {
    if (IsGap(record, i)) return true;
  }
  return false;
}

InflowRows ReadRows(const _tGetSetData& record) {
  const int32_t count = BoundedCount(record);
  InflowRows rows;
  rows.reserve(EXT_MAX_INFLOW_POINTS);
  for (int32_t i = 0; i < count; ++i) {
    if (IsGap(record, i)) continue;
    InflowRow row = {record.pressure[i], record.oilRate[i],  record.waterRate[i],
                     record.gasRate[i],  record.massRate[i], record.pointValue[i]};
    std::ranges::copy(record.moleFractions[i], row.moleFractions.begin());
    rows.push_back(row);
  }
  return rows;
}

void WriteRows(const InflowRows& rows, _tGetSetData& record) {
  const size_t count = std::min<size_t>(rows.size(), EXT_MAX_INFLOW_POINTS);
  for (size_t i = 0; i < count; ++i) {
    record.pressure[i] = rows[i].pressure;
    record.oilRate[i] = rows[i].oilRate;
    record.waterRate[i] = rows[i].waterRate;
    record.gasRate[i] = rows[i].gasRate;
    record.massRate[i] = rows[i].massRate;
    record.pointValue[i] = rows[i].pointValue;
    std::ranges::copy(rows[i].moleFractions, record.moleFractions[i]);
  }
  record.pointCount = static_cast<int32_t>(count);
  record.isShut = count == 0 ? 1 : 0;
}

InflowRow RowBetween(const InflowRow& a, const InflowRow& b, double fraction) {
  const auto mix = [fraction](double from, double to) { return std::lerp(from, to, fraction); };
  InflowRow row = {mix(a.pressure, b.pressure),   mix(a.oilRate, b.oilRate),
                   mix(a.waterRate, b.waterRate), mix(a.gasRate, b.gasRate),
                   mix(a.massRate, b.massRate),   mix(a.pointValue, b.pointValue)};
  std::ranges::transform(a.moleFractions, b.moleFractions, row.moleFractions.begin(), mix);
  return row;
}

RateMeasure MeasureOf(const InflowRows& rows) {
  const bool hasLiquid = std::ranges::any_of(rows, [](const InflowRow& row) {
    return std::abs(RateOf(row, RateMeasure::kLiquid)) > kNoRate;
  });
  return hasLiquid ? RateMeasure::kLiquid : RateMeasure::kGas;
}

double RateOf(const InflowRow& row, RateMeasure measure) {
  return measure == RateMeasure::kLiquid ? row.oilRate + row.waterRate : row.gasRate;
}

double HighestRate(const InflowRows& rows, RateMeasure measure) {
  double highest = 0.0;
  for (const InflowRow& row : rows) highest = std::max(highest, RateOf(row, measure));
  return highest;
}

bool IsCurve(const InflowRows& rows, RateMeasure measure) {
  return rows.size() >= 2 && HighestRate(rows, measure) > kNoRate &&
         RunsOneWay(rows, [](const InflowRow& row) { return row.pressure; }) &&
         RunsOneWay(rows, [measure](const InflowRow& row) { return RateOf(row, measure); });
}

double PressureAt(const InflowRows& rows, RateMeasure measure, double rate) {
  std::vector<std::pair<double, double>> curve;
  curve.reserve(rows.size());
  for (const InflowRow& row : rows) curve.emplace_back(RateOf(row, measure), row.pressure);
  if (curve.front().first > curve.back().first) std::ranges::reverse(curve);

  size_t upper = 1;
  while (upper + 1 < curve.size() && curve[upper].first < rate) ++upper;
  const auto& [lowRate, lowPressure] = curve[upper - 1];
  const auto& [highRate, highPressure] = curve[upper];
  if (highRate - lowRate <= kNoRate) return lowPressure;
  const double bounded = std::min(rate, highRate);
  return lowPressure + (bounded - lowRate) * (highPressure - lowPressure) / (highRate - lowRate);
}

}  // namespace gantry::inflow
