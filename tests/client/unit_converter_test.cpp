#include "client/unit_converter.h"

#include <bit>

#include <gtest/gtest.h>

namespace gantry {
namespace {

const UnitConverter kMetric(true);
const UnitConverter kField(false);

TEST(UnitConverter, GivesTheSettledNumbers) {
  EXPECT_EQ(kMetric.FromSimulator(1.01325, kPressure), 1.01325 / 0.0689476 - 14.696);
  EXPECT_EQ(kField.FromSimulator(100.0, kPressure), 100.0 - 14.696);
  EXPECT_EQ(kMetric.ToSimulator(100.0, kPressure), (100.0 + 14.696) * 0.0689476);
  EXPECT_EQ(kMetric.FromSimulator(0.0, kTemperature), 32.0);
  EXPECT_EQ(kField.FromSimulator(0.0, kTemperature), 0.0);
  EXPECT_EQ(kMetric.ToSimulator(100000.0, kLiquidRate), 100000.0 * 0.158987);
  EXPECT_EQ(kMetric.ToSimulator(1.0, kGasRate), 28174.0);
  EXPECT_EQ(kField.ToSimulator(1.0, kGasOilRatio), 0.001);
}

TEST(UnitConverter, LeavesValuesWithoutAUnitAlone) {
  for (const int32_t code : {-1, 13, 1 << 30}) {
    for (const double value : {-0.1, -0.0}) {
      const auto bits = std::bit_cast<uint64_t>(value);
      EXPECT_EQ(std::bit_cast<uint64_t>(kMetric.FromSimulator(value, code)), bits) << value;
      EXPECT_EQ(std::bit_cast<uint64_t>(kMetric.ToSimulator(value, code)), bits) << value;
    }
  }
}

}  // namespace
}  // namespace gantry
