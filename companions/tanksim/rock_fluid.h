#pragma once

#include <vector>

#include "tanksim/lookup_table.h"

namespace gantry::simulator {

/// Relative permeability tables as a deck gives them: oil with water, and oil with gas at connate
/// water.
struct RockFluidData {
  std::vector<double> waterSaturation;
  std::vector<double> water;
  std::vector<double> oilInWater;
  std::vector<double> gasSaturation;
  std::vector<double> gas;
  std::vector<double> oilInGas;
};

struct RelativePermeability {
  double oil = 0.0;
  double gas = 0.0;
  double water = 0.0;
};

/// Three-phase relative permeability from the two-phase tables, by Stone's second model normalised
/// with the oil's value at connate water (Aziz and Settari, Petroleum Reservoir Simulation, 1979,
/// section 2.6).
class RockFluid {
 public:
  RockFluid() = default;
  explicit RockFluid(const RockFluidData& data);

  RelativePermeability At(double waterSaturation, double gasSaturation) const;
  double ConnateWater() const { return connateWater_; }
  /// Of oil at connate water without gas.
  double LargestOil() const { return largestOil_; }
  double LargestWaterSaturation() const { return water_.LastPoint(); }
  double LargestGasSaturation() const { return gas_.LastPoint(); }

 private:
  LookupTable water_;
  LookupTable oilInWater_;
  LookupTable gas_;
  LookupTable oilInGas_;
  double connateWater_ = 0.0;
  double largestOil_ = 1.0;
};

}  // namespace gantry::simulator
