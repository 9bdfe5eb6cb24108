#pragma once

#include <span>
#include <string_view>

namespace gantry::toml_reader {

/// What a number of a file or of an output table measures. Where two differ only in their units,
/// one is a host's and the other the simulator's.
enum class Quantity {
  kNone,  ///< no unit
  kLiquidRate,
  kGasRate,
  kGaugePressure,
  kLength,
  kDiameter,
  kTemperature,
  kGasLiquidRatio,
  kLiquidVolume,
  kGasVolume,
  kDays,
  kLiquid,
  kGas,
  kReservoirVolume,
  kPressure,
  kSimulatorTemperature,
  kDensity,
  kCriticalVolume,
  kMoles,
  kGasPerLiquid,
  kGasVolumeFactor,
  kInversePressure,
  kLiquidPerPressure,
  kGasPerPressure,
};

/// The units in which a file states its numbers, and in which its results are told.
enum class UnitSystem { kField, kMetric };

/// What a gauge pressure leaves out, psi.
inline constexpr double kAtmosphere = 14.696;
/// From degrees Fahrenheit to degrees Rankine.
inline constexpr double kFahrenheitToRankine = 459.67;

/// Metric value = (field value + offset) x factor.
struct QuantityRow {
  Quantity quantity;
  std::string_view name;  ///< as a user calls it; empty for what isn't listed
  std::string_view fieldUnit;
  std::string_view metricUnit;
  double offset;
  double factor;
};

/// All of them, in the order of the enumeration.
std::span<const QuantityRow> Quantities();

/// The programs compute in field units throughout; only what is read from a file, exchanged with a
/// peer in other units or written for the user passes through these two.
double ToField(double value, Quantity quantity, UnitSystem system);
double FromField(double value, Quantity quantity, UnitSystem system);

/// The unit's name as it stands in tables and headings: "STB/d", "bara". Empty for a plain number.
std::string_view UnitName(Quantity quantity, UnitSystem system);

}  // namespace gantry::toml_reader
