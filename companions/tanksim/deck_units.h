#pragma once

namespace gantry::simulator {

/// What a number measures, for its conversion between a deck's unit system and field units.
enum class Quantity {
  kNumber,             ///< no unit
  kLiquid,             ///< stb, stb/d; sm3, sm3/d
  kGas,                ///< Mscf, Mscf/d; sm3, sm3/d
  kReservoirVolume,    ///< rb, rb/d; rm3, rm3/d
  kPressure,           ///< psi; bar
  kTemperature,        ///< degrees Fahrenheit; Celsius
  kDensity,            ///< lb/ft3; kg/m3
  kCriticalVolume,     ///< ft3/lb-mol; m3/kg-mol
  kMoles,              ///< lb-mol, lb-mol/d; kg-mol, kg-mol/d
  kGasPerLiquid,       ///< Mscf/stb; sm3/sm3
  kGasVolumeFactor,    ///< rb/Mscf; rm3/sm3
  kInversePressure,    ///< 1/psi; 1/bar
  kLiquidPerPressure,  ///< stb/d/psi; sm3/d/bar
  kGasPerPressure,     ///< Mscf/d/psi; sm3/d/bar
  kLength,             ///< ft; m
  kCount,
};

/// A deck's unit system. The model works in field units throughout: stock-tank barrels, thousands
/// of standard cubic feet, reservoir barrels, psia, degrees Fahrenheit, lb/ft3, cp, days. The
/// metric scales agree with those by which a controller turns its own units into a metric
/// simulator's; pressures are absolute in both systems.
class DeckUnits {
 public:
  explicit DeckUnits(bool isMetric = false) : isMetric_(isMetric) {}

  bool IsMetric() const { return isMetric_; }
  double ToField(double value, Quantity quantity) const;
  double FromField(double value, Quantity quantity) const;

 private:
  bool isMetric_;
};

}  // namespace gantry::simulator
