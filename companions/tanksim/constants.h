#pragma once

// Physical constants of the model's field units.

#include "described_toml/calendar.h"
#include "described_toml/quantity.h"

namespace gantry::simulator {

using toml_reader::kFahrenheitToRankine;
using toml_reader::kSecondsPerDay;

inline constexpr double kCubicFeetPerBarrel = 5.614583;
inline constexpr double kCubicFeetPerMscf = 1000.0;
inline constexpr double kStandardPressure = toml_reader::kAtmosphere;  // psia
inline constexpr double kStandardTemperature = 60.0;                   // degrees Fahrenheit
inline constexpr double kGasConstant = 10.7316;                        // psi ft3 / (lb-mol R)
inline constexpr double kSquareInchesPerSquareFoot = 144.0;
inline constexpr double kGravity = 32.174;  // ft/s2, and lb ft / (lbf s2)

}  // namespace gantry::simulator
