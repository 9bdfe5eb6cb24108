#include "described_toml/quantity.h"

#include <cstddef>
#include <iterator>

namespace gantry::toml_reader {
namespace {

using enum Quantity;

// The driver's own settled factors, so that a metric file and a metric simulator behind the driver
// mean the same number. Metric pressures are absolute.
constexpr double kLiquidScale = 0.158987;     // Sm3 for each STB
constexpr double kGasScale = 28.174;          // Sm3 for each Mscf
constexpr double kPressureScale = 0.0689476;  // bar for each psi

constexpr QuantityRow kQuantities[] = {
    {kNone, "", "", "", 0, 1},
    {kLiquidRate, "liquid rate", "STB/d", "Sm3/d", 0, kLiquidScale},
    {kGasRate, "gas rate", "MMscf/d", "kSm3/d", 0, kGasScale},
    {kGaugePressure, "pressure", "psig", "bara", kAtmosphere, kPressureScale},
    {kLength, "length", "ft", "m", 0, 0.3048},
    {kDiameter, "diameter, roughness", "in", "mm", 0, 25.4},
    {kTemperature, "temperature", "degF", "degC", -32, 5.0 / 9.0},
    {kGasLiquidRatio, "gas-oil ratio", "scf/STB", "Sm3/Sm3", 0, kGasScale * 1e-3 / kLiquidScale},
    {kLiquidVolume, "liquid volume", "STB", "Sm3", 0, kLiquidScale},
    {kGasVolume, "gas volume", "MMscf", "kSm3", 0, kGasScale},
    {kDays, "time", "days", "days", 0, 1},
    {kLiquid, "", "stb, stb/d", "sm3, sm3/d", 0, kLiquidScale},
    {kGas, "", "Mscf, Mscf/d", "sm3, sm3/d", 0, kGasScale},
    {kReservoirVolume, "", "rb, rb/d", "rm3, rm3/d", 0, kLiquidScale},
    {kPressure, "", "psia", "bara", 0, kPressureScale},
    {kSimulatorTemperature, "", "F", "C", -32, 0.555555},
    {kDensity, "", "lb/ft3", "kg/m3", 0, 16.0185},
    {kCriticalVolume, "", "ft3/lb-mol", "m3/kg-mol", 0, 0.06243},
    {kMoles, "", "lb-mol", "kg-mol", 0, 0.45359},
    {kGasPerLiquid, "", "Mscf/stb", "sm3/sm3", 0, kGasScale / kLiquidScale},
    {kGasVolumeFactor, "", "rb/Mscf", "rm3/sm3", 0, kLiquidScale / kGasScale},
    {kInversePressure, "", "1/psi", "1/bar", 0, 1 / kPressureScale},
    {kLiquidPerPressure, "", "stb/d/psi", "sm3/d/bar", 0, kLiquidScale / kPressureScale},
    {kGasPerPressure, "", "Mscf/d/psi", "sm3/d/bar", 0, kGasScale / kPressureScale},
};

constexpr bool IsInOrder() {
  for (size_t i = 0; i < std::size(kQuantities); ++i) {
    if (kQuantities[i].quantity != static_cast<Quantity>(i)) return false;
  }
  return true;
}
static_assert(IsInOrder());

const QuantityRow& Of(Quantity quantity) { return kQuantities[static_cast<size_t>(quantity)]; }

}  // namespace

std::span<const QuantityRow> Quantities() { return kQuantities; }

double ToField(double value, Quantity quantity, UnitSystem system) {
  if (system == UnitSystem::kField) return value;
  return value / Of(quantity).factor - Of(quantity).offset;
}

double FromField(double value, Quantity quantity, UnitSystem system) {
  if (system == UnitSystem::kField) return value;
  return (value + Of(quantity).offset) * Of(quantity).factor;
}

std::string_view UnitName(Quantity quantity, UnitSystem system) {
  return system == UnitSystem::kField ? Of(quantity).fieldUnit : Of(quantity).metricUnit;
}

}  // namespace gantry::toml_reader
