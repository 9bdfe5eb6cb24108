#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fieldrun/case/quantities.h"
#include "fieldrun/case/rates.h"

namespace gantry::fieldrun {

/// How an axis of a lift table is worked out of rates in the table's units; what can't be, like a
/// water cut without liquid, is 0.
using FlowFunction = double (*)(const Rates&);

struct VfpAxis {
  std::string_view name;       ///< as warnings call it
  FlowFunction of = nullptr;   ///< null for the head pressure and for artificial lift
  std::vector<double> values;  ///< rising, in the table's units
};

/// The lift curves of a well as a keyword VFPPROD or VFPINJ gives them: the pressure at the foot of
/// its tubing over what flows, the pressure at its head and, of a producer, water, gas and
/// artificial lift. Read as OPM Flow reads it: along each axis straight between two values, and
/// beyond the outermost ones straight on.
struct VfpTable {
  enum AxisIndex { kFlow, kHead, kWater, kGas, kLift, kAxes };

  int number = 0;
  bool isProducer = true;
  UnitSystem units = UnitSystem::kField;
  double datumDepth = 0;  ///< of the foot, in the table's units
  std::array<VfpAxis, kAxes> axes;
  std::vector<double> pressures;  ///< the first axis runs fastest; absolute, in the table's units

  /// psig, for what flows at a head pressure in psig and for an artificial lift in the table's
  /// units.
  double FootPressure(double headPressure, double artificialLift, const Rates& rates) const;
  /// What of this the table doesn't reach to: "liquid 12 (20 to 10000)"; empty when it reaches to
  /// all.
  std::string BeyondAxes(double headPressure, double artificialLift, const Rates& rates) const;

 private:
  std::array<double, kAxes> Place(double headPressure, double artificialLift,
                                  const Rates& rates) const;
};

/// Reads the table of that number, or the only one, out of a file with such keywords; whatever else
/// stands there is passed over. `units` are those of a table that names none. Throws CaseError with
/// the file and the line.
VfpTable ReadVfpTable(const std::string& path, std::optional<int> number, UnitSystem units);

}  // namespace gantry::fieldrun
