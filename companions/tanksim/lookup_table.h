#pragma once

#include <vector>

namespace gantry::simulator {

/// A function given at rising points, linear between them. Below the first point it keeps its
/// value; above the last one it keeps its value or goes on with the last slope.
class LookupTable {
 public:
  enum class Beyond { kConstant, kLastSlope };

  LookupTable() = default;
  LookupTable(std::vector<double> points, std::vector<double> values,
              Beyond beyond = Beyond::kConstant);

  double At(double point) const;
  double LastPoint() const { return points_.back(); }
  /// The same function with points and values exchanged; the values must rise.
  LookupTable Inverse() const { return {values_, points_, beyond_}; }

 private:
  std::vector<double> points_;
  std::vector<double> values_;
  Beyond beyond_ = Beyond::kConstant;
};

}  // namespace gantry::simulator
