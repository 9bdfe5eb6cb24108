#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "boundary/records.h"
#include "wells/source.h"

namespace gantry {

/// The straight line through the table's entries at `value`. `x` may run up or down; the first
/// pair of entries that brackets the value counts. Past an end the line goes on, or with
/// `extrapolate` off stays at that end's y. 3.4e35 for fewer than two entries.
double InterpolateTable(std::span<const double> x, std::span<const double> y, double value,
                        bool extrapolate);

/// The inflow points of a well as columns, for evaluation. Units as in `IPRPoint`.
class IPRTable {
 public:
  enum Column : int32_t {
    kPressureColumn,
    kLiquidColumn,
    kOilColumn,
    kWaterColumn,
    kGasColumn,
    kColumnCount = 7
  };
  using RowValues = std::array<double, kColumnCount>;

  /// Takes the first 10 points.
  IPRTable(std::span<const IPRPoint> points, bool isProducer);

  /// True when there is nothing to interpolate in: fewer than two rows, or no flow in any.
  bool IsDead() const;
  RowValues Row(int32_t row) const;
  /// The value of a column where another has `value`; 3.4e35 when there is none.
  double Interpolate(int32_t fromColumn, double value, int32_t toColumn) const;
  /// All columns at a pressure.
  RowValues Evaluate(double pressure) const;

  int32_t Count = 0;
  bool IsProducer = false;

 private:
  std::span<const double> ColumnValues(int32_t column) const;

  std::array<std::array<double, kMaxInflowPoints>, kColumnCount> columns_ = {};
};

}  // namespace gantry
