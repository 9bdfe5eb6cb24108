#pragma once

#include <array>
#include <vector>

#include "gantry/records.h"

namespace gantry::inflow {

/// One point of an inflow table, with all that the record of the exchange says of it.
struct InflowRow {
  double pressure = 0.0;
  double oilRate = 0.0;
  double waterRate = 0.0;
  double gasRate = 0.0;
  double massRate = 0.0;
  double pointValue = 0.0;
  std::array<double, EXT_MAX_COMPONENTS> moleFractions{};
};
using InflowRows = std::vector<InflowRow>;

/// True for what isn't a number, and for the system's two marks of a missing one.
bool IsMissing(double value);

/// True when the record's count is out of bounds or one of its points has a missing number.
bool HasGaps(const _tGetSetData& record);

/// The points of the record, at most ten, in its order; points with a missing pressure or rate are
/// left out.
InflowRows ReadRows(const _tGetSetData& record);

/// Makes `rows`, at most ten, the points of the record. What stands behind them is left alone.
void WriteRows(const InflowRows& rows, _tGetSetData& record);

/// The row that stands at `fraction` of the way from `a` to `b`.
InflowRow RowBetween(const InflowRow& a, const InflowRow& b, double fraction);

/// By which rate a table is read: liquid, or gas where there is no liquid.
enum class RateMeasure { kLiquid, kGas };
RateMeasure MeasureOf(const InflowRows& rows);
double RateOf(const InflowRow& row, RateMeasure measure);

/// The highest rate of the table; 0 without rows.
double HighestRate(const InflowRows& rows, RateMeasure measure);

/// True when rates and pressures each run one way from the first row to the last: only then is the
/// table an inflow curve.
bool IsCurve(const InflowRows& rows, RateMeasure measure);

/// The curve's pressure at a rate. Below the lowest rate its last two rows are prolonged, which at
/// rate 0 gives the pressure of the block that holds the well; above the highest the end holds.
/// The rows must be a curve of at least two.
double PressureAt(const InflowRows& rows, RateMeasure measure, double rate);

}  // namespace gantry::inflow
