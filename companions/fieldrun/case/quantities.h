#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace gantry::fieldrun {

/// What a number of a case file or of an output table measures.
enum class Quantity {
  kNone,
  kLiquidRate,
  kGasRate,
  kPressure,
  kLength,
  kDiameter,
  kTemperature,
  kGasLiquidRatio,
  kLiquidVolume,
  kGasVolume,
  kDays,
};

/// The quantities that have a unit, as a user calls them.
inline constexpr std::pair<Quantity, std::string_view> kQuantityNames[] = {
    {Quantity::kLiquidRate, "liquid rate"},
    {Quantity::kGasRate, "gas rate"},
    {Quantity::kPressure, "pressure"},
    {Quantity::kLength, "length"},
    {Quantity::kDiameter, "diameter, roughness"},
    {Quantity::kTemperature, "temperature"},
    {Quantity::kGasLiquidRatio, "gas-oil ratio"},
    {Quantity::kLiquidVolume, "liquid volume"},
    {Quantity::kGasVolume, "gas volume"},
    {Quantity::kDays, "time"},
};

/// The units in which a case states its numbers and wants its results.
enum class UnitSystem { kField, kMetric };

/// Everything inside fieldrun, and everything at the module's boundary, is in field units: STB/d,
/// MMscf/d, psig, feet, inches, degrees Fahrenheit, scf/STB. Only what is read from a case and what
/// is written for the user passes through these two.
double ToInternal(double value, Quantity quantity, UnitSystem system);
double FromInternal(double value, Quantity quantity, UnitSystem system);

/// The unit's name as it stands in tables and headings: "STB/d", "bara". Empty for a plain number.
std::string_view UnitName(Quantity quantity, UnitSystem system);

/// "1 well", "5 wells".
std::string Counted(size_t count, std::string_view noun);

}  // namespace gantry::fieldrun
