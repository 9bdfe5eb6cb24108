#pragma once

#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "gantry/records.h"
#include "support/talk.h"

namespace gantry::test {

/// What stands behind a verb, taken word by word.
class Words {
 public:
  explicit Words(const std::string& line) : line_(line) {}

  template <class T = std::string>
  T Next(T otherwise = {}) {
    T word = otherwise;
    return line_ >> word ? word : otherwise;
  }
  template <class T>
  std::vector<T> All() {
    return {std::istream_iterator<T>(line_), {}};
  }
  std::string Rest() {
    std::string rest;
    std::getline(line_ >> std::ws, rest);
    return rest;
  }

 private:
  std::istringstream line_;
};

/// A part of an inflow record.
inline std::string Part(const _tGetSetData& r, const std::string& part) {
  const auto point = [&r](size_t i) {
    return Line(r.oilRate[i], r.waterRate[i], r.gasRate[i], r.pressure[i]);
  };
  const std::map<std::string, std::string> parts = {
      {"points", Line(r.pointCount, int{r.isShut}, r.hasStepped)},
      {"first", point(0)},
      {"last", point(9)},
      {"values", Line(r.pointValue[0], r.pointValue[9], r.passThrough[2])},
      {"mass", Line(r.massRate[0])},
      {"gravities", Line(r.oilGravity, r.gasGravity, r.waterGravity)},
      {"now", Line(r.currentOilRate, r.currentWaterRate, r.currentGasRate, r.currentPressure)},
      {"fractions",
       Line(std::string(r.fluid.names[3], 2), r.moleFractions[9][3], r.moleFractions[9][4])},
      {"untouched", Line(r.size, r.fluid.reserved0)}};
  return parts.at(part);
}

}  // namespace gantry::test
