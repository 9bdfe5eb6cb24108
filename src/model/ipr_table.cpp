#include "model/ipr_table.h"

#include <algorithm>
#include <cmath>

#include "boundary/error_text.h"

namespace gantry {
namespace {

constexpr double kNoFlow = 0.00001;
constexpr double kEqualEntries = 0.0001;

/// The first of two neighbouring entries between which the value lies, or none.
bool FindBracket(std::span<const double> x, double value, size_t& first) {
  for (first = 0; first + 1 < x.size(); ++first) {
    if ((value - x[first]) * (value - x[first + 1]) <= 0.0) return true;
  }
  return false;
}

bool IsRising(std::span<const double> x) {
  return std::ranges::adjacent_find(x, std::less<>()) != x.end();
}

double Line(double x1, double y1, double x2, double y2, double value) {
  if (std::abs(x2 - x1) < kEqualEntries) return (y1 + y2) / 2.0;
  return y1 + (value - x1) * (y2 - y1) / (x2 - x1);
}

}  // namespace

double InterpolateTable(std::span<const double> x, std::span<const double> y, double value,
                        bool extrapolate) {
  if (x.size() < 2 || y.size() < x.size()) return EXT_FAILED_NUMBER;
  size_t first = 0;
  if (!FindBracket(x, value, first)) {
    const bool isBeforeFirst = IsRising(x) ? value < x.front() : value > x.front();
    if (!extrapolate) return isBeforeFirst ? y.front() : y[x.size() - 1];
    first = isBeforeFirst ? 0 : x.size() - 2;
  }
  return Line(x[first], y[first], x[first + 1], y[first + 1], value);
}

IPRTable::IPRTable(std::span<const IPRPoint> points, bool isProducer) : IsProducer(isProducer) {
  const size_t count = std::min(points.size(), kMaxInflowPoints);
  Count = static_cast<int32_t>(count);
  for (size_t row = 0; row < count; ++row) {
    const IPRPoint& point = points[row];
    columns_[kPressureColumn][row] = point.Pressure;
    columns_[kLiquidColumn][row] = point.OilRate + point.WaterRate;
    columns_[kOilColumn][row] = point.OilRate;
    columns_[kWaterColumn][row] = point.WaterRate;
    columns_[kGasColumn][row] = point.GasRate;
  }
}

bool IPRTable::IsDead() const {
  const auto flows = [](double rate) { return std::abs(rate) > kNoFlow; };
  return Count < 2 || (std::ranges::none_of(ColumnValues(kLiquidColumn), flows) &&
                       std::ranges::none_of(ColumnValues(kGasColumn), flows));
}

IPRTable::RowValues IPRTable::Row(int32_t row) const {
  RowValues values = {};
  if (row < 0 || row >= Count) return values;
  for (size_t column = 0; column < columns_.size(); ++column) {
    values[column] = columns_[column][static_cast<size_t>(row)];
  }
  return values;
}

double IPRTable::Interpolate(int32_t fromColumn, double value, int32_t toColumn) const {
  if (fromColumn == toColumn) return value;
  const auto isColumn = [](int32_t column) { return column >= 0 && column < kColumnCount; };
  if (!isColumn(fromColumn) || !isColumn(toColumn)) return EXT_FAILED_NUMBER;
  return InterpolateTable(ColumnValues(fromColumn), ColumnValues(toColumn), value, true);
}

IPRTable::RowValues IPRTable::Evaluate(double pressure) const {
  RowValues values = {pressure};
  for (int32_t column = 1; column < kColumnCount; ++column) {
    values[static_cast<size_t>(column)] = Interpolate(kPressureColumn, pressure, column);
  }
  return values;
}

std::span<const double> IPRTable::ColumnValues(int32_t column) const {
  return std::span(columns_[static_cast<size_t>(column)]).first(static_cast<size_t>(Count));
}

}  // namespace gantry
