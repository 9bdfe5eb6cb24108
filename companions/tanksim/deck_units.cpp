#include "tanksim/deck_units.h"

#include <array>
#include <cstddef>

namespace gantry::simulator {

namespace {

constexpr double kLiquidScale = 0.158987;     // sm3 for each stb
constexpr double kGasScale = 28.174;          // sm3 for each Mscf
constexpr double kPressureScale = 0.0689476;  // bar for each psi

/// Metric value = (field value + offset) x factor.
struct Scale {
  double offset;
  double factor;
};

constexpr std::array<Scale, static_cast<size_t>(Quantity::kCount)> kMetricScales = {{
    {0, 1},
    {0, kLiquidScale},
    {0, kGasScale},
    {0, kLiquidScale},
    {0, kPressureScale},
    {-32, 0.555555},
    {0, 16.0185},
    {0, 0.06243},
    {0, 0.45359},
    {0, kGasScale / kLiquidScale},
    {0, kLiquidScale / kGasScale},
    {0, 1 / kPressureScale},
    {0, kLiquidScale / kPressureScale},
    {0, kGasScale / kPressureScale},
    {0, 0.3048},
}};

}  // namespace

double DeckUnits::ToField(double value, Quantity quantity) const {
  if (!isMetric_) return value;
  const Scale scale = kMetricScales[static_cast<size_t>(quantity)];
  return value / scale.factor - scale.offset;
}

double DeckUnits::FromField(double value, Quantity quantity) const {
  if (!isMetric_) return value;
  const Scale scale = kMetricScales[static_cast<size_t>(quantity)];
  return (value + scale.offset) * scale.factor;
}

}  // namespace gantry::simulator
