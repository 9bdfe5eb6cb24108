#include "fieldrun/case/quantities.h"

#include <array>
#include <cstddef>

namespace gantry::fieldrun {
namespace {

struct Conversion {
  std::string_view fieldUnit;
  std::string_view metricUnit;
  double offset;  // metric = (field + offset) * factor
  double factor;
};

// Rates, volumes and pressures take the driver's own settled factors, so that a metric case and a
// metric simulator behind the driver mean the same number. Metric pressures are absolute.
constexpr double kCubicMetresPerBarrel = 0.158987;
constexpr double kThousandCubicMetresPerMMscf = 28.174;
constexpr std::array<Conversion, 11> kConversions{{
    {"", "", 0, 1},
    {"STB/d", "Sm3/d", 0, kCubicMetresPerBarrel},
    {"MMscf/d", "kSm3/d", 0, kThousandCubicMetresPerMMscf},
    {"psig", "bara", 14.696, 0.0689476},
    {"ft", "m", 0, 0.3048},
    {"in", "mm", 0, 25.4},
    {"degF", "degC", -32, 5.0 / 9.0},
    {"scf/STB", "Sm3/Sm3", 0, kThousandCubicMetresPerMMscf * 1e-3 / kCubicMetresPerBarrel},
    {"STB", "Sm3", 0, kCubicMetresPerBarrel},
    {"MMscf", "kSm3", 0, kThousandCubicMetresPerMMscf},
    {"days", "days", 0, 1},
}};

const Conversion& Of(Quantity quantity) { return kConversions[static_cast<size_t>(quantity)]; }

}  // namespace

double ToInternal(double value, Quantity quantity, UnitSystem system) {
  if (system == UnitSystem::kField) return value;
  const Conversion& conversion = Of(quantity);
  return value / conversion.factor - conversion.offset;
}

double FromInternal(double value, Quantity quantity, UnitSystem system) {
  if (system == UnitSystem::kField) return value;
  const Conversion& conversion = Of(quantity);
  return (value + conversion.offset) * conversion.factor;
}

std::string_view UnitName(Quantity quantity, UnitSystem system) {
  return system == UnitSystem::kField ? Of(quantity).fieldUnit : Of(quantity).metricUnit;
}

std::string Counted(size_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace gantry::fieldrun
