#include "tanksim/rock_fluid.h"

#include <algorithm>

namespace gantry::simulator {

RockFluid::RockFluid(const RockFluidData& data)
    : water_(data.waterSaturation, data.water),
      oilInWater_(data.waterSaturation, data.oilInWater),
      gas_(data.gasSaturation, data.gas),
      oilInGas_(data.gasSaturation, data.oilInGas),
      connateWater_(data.waterSaturation.front()),
      largestOil_(data.oilInWater.front()) {}

RelativePermeability RockFluid::At(double waterSaturation, double gasSaturation) const {
  RelativePermeability relative;
  relative.water = water_.At(waterSaturation);
  relative.gas = gas_.At(gasSaturation);
  const double withWater = oilInWater_.At(waterSaturation) / largestOil_ + relative.water;
  const double withGas = oilInGas_.At(gasSaturation) / largestOil_ + relative.gas;
  relative.oil = std::max(0.0, largestOil_ * (withWater * withGas - relative.water - relative.gas));
  return relative;
}

}  // namespace gantry::simulator
