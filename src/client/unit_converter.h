#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace gantry {

/// A unit family's conversion: simulator value = (value + offset) x factor.
struct UnitScale {
  double offset;
  double factor;
};

inline constexpr UnitScale kSameUnit = {0.0, 1.0};

inline double FromSimulator(double value, const UnitScale& scale) {
  return value / scale.factor - scale.offset;
}

inline double ToSimulator(double value, const UnitScale& scale) {
  return (value + scale.offset) * scale.factor;
}

/// One unit family: its name, the host's code of its "User" variable, and its scales.
struct UnitFamily {
  const char* name;
  uint32_t userCode;
  UnitScale metric;
  UnitScale field;
};

inline constexpr int32_t kUnitFamilyCount = 13;

/// The unit families by their codes 0 to 12. The numbers are settled: a conversion there and back
/// must give what they give.
extern const std::array<UnitFamily, kUnitFamilyCount> UnitFamilyTable;

/// The codes, for code that names one.
enum UnitCode : int32_t {
  kNoUnit = -1,
  kLiquidRate = 0,
  kGasRate = 1,
  kLiquidVolume = 2,
  kGasVolume = 3,
  kReservoirRate = 4,
  kReservoirVolume = 5,
  kPressure = 6,
  kPressureDifference = 7,
  kTemperature = 8,
  kDensity = 9,
  kCriticalVolume = 10,
  kGasOilRatio = 11,
  kMoleRate = 12,
};

/// The name shown for a family, "None" for a code below 0.
const char* UnitFamilyName(int32_t code);
/// The host's variable code of a family, 60051 for a code below 0.
uint32_t UnitFamilyUserCode(int32_t code);

/// Converts between the driver's fixed units and the simulator's, metric or field. A code outside
/// the table leaves the value as it is.
class UnitConverter {
 public:
  explicit UnitConverter(bool isMetric) : isMetric_(isMetric) {}

  bool IsMetric() const { return isMetric_; }
  double FromSimulator(double value, int32_t code) const;
  double ToSimulator(double value, int32_t code) const;
  void FromSimulator(std::span<double> values, int32_t code) const;
  void ToSimulator(std::span<double> values, int32_t code) const;
  /// Null for a code outside the table.
  const UnitScale* ScaleOf(int32_t code) const;

 private:
  bool isMetric_;
};

}  // namespace gantry
