#include "wells/source.h"

#include <array>
#include <sstream>

#include <gtest/gtest.h>

#include "client/query_results.h"
#include "wells/static_well_data.h"

namespace gantry::test {
namespace {

TEST(Source, IsAGasWellWhenItsWholeInflowMakesMuchGasToItsLiquid) {
  const auto isGasWell = [](const std::vector<std::array<double, 3>>& gasOilWater) {
    Source source;
    for (const auto& [gas, oil, water] : gasOilWater) {
      source.SimulatorIPR.push_back({0.0, oil, gas, water, {}});
    }
    return source.IsGasWell();
  };
  EXPECT_FALSE(isGasWell({}));
  EXPECT_FALSE(isGasWell({{20.0, 900.0, 100.0}})) << "exactly the limit";
  EXPECT_TRUE(isGasWell({{20.0, 900.0, 50.0}, {1.0, 10.0, 10.0}}));
  EXPECT_FALSE(isGasWell({{20.0, 0.5, 0.5}})) << "hardly a liquid";
}

TEST(Source, IsControlledByItsTypeItsModeAndItsGasLiquidRatio) {
  struct Case {
    int32_t type;
    int32_t opMode;
    double oil, water, gas;
    const char* expected;  ///< item, value and unit code of each control
  };
  const Case cases[] = {
      {kProducer, 0, 80, 20, 1.0, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 0, 80, 20, 1.01, "GAS_PRODUCTION_RATE 1.01 1;"},
      {kProducer, 0, 0.25, 0.25, 0, "GAS_PRODUCTION_RATE 0 1;"},
      {kProducer, 0, 0.5, 0.25, 0, "LIQUID_PRODUCTION_RATE 0.75 0;"},
      {kProducer, 1, 80, 20, 9, "GAS_PRODUCTION_RATE 9 1;LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 2, 80, 20, 9, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kProducer, 3, 80, 20, 9, "GAS_PRODUCTION_RATE 9 1;"},
      {kProducer, 17, 80, 20, 9, "LIQUID_PRODUCTION_RATE 100 0;"},
      {kWaterInjector, 1, 80, 20, 9, "WATER_INJECTION_RATE 20 0;"},
      {kGasInjector, 2, 80, 20, 9, "GAS_INJECTION_RATE 9 1;"},
      {kInjector, 3, 80, 20, 9, "WATER_INJECTION_RATE 20 0;"},
  };
  Strings items;
  Doubles values;
  std::vector<int32_t> codes;
  for (const auto& [type, opMode, oil, water, gas, expected] : cases) {
    Source source;
    source.SourceType = type;
    source.OpPoint = {0.0, oil, gas, water, {}};
    ChooseControl(source, opMode, {items, values, codes});
    std::ostringstream shown;
    for (size_t i = 0; i < items.size(); ++i) {
      shown << items[i] << ' ' << values.at(i) << ' ' << codes.at(i) << ';';
    }
    EXPECT_EQ(shown.str(), expected) << "type " << type << ", mode " << opMode;
  }
}

}  // namespace
}  // namespace gantry::test
