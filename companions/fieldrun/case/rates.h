#pragma once

#include <limits>

namespace gantry::fieldrun {

/// Surface rates of a well: STB/d and MMscf/d. Injected rates are positive too.
struct Rates {
  double oil = 0;
  double water = 0;
  double gas = 0;

  double Liquid() const { return oil + water; }
  /// One number for how much flows: barrels, with gas counted by mass (1 MMscf of a 0.7 gravity gas
  /// weighs about as much as 150 barrels of water).
  double Size() const { return oil + water + 150 * gas; }
};

/// Of what nobody tells. Sums with it are unknown too.
constexpr Rates kUnknownRates{std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::quiet_NaN()};

inline Rates operator*(double factor, const Rates& rates) {
  return {factor * rates.oil, factor * rates.water, factor * rates.gas};
}

inline Rates& operator+=(Rates& sum, const Rates& rates) {
  sum = {sum.oil + rates.oil, sum.water + rates.water, sum.gas + rates.gas};
  return sum;
}

}  // namespace gantry::fieldrun
