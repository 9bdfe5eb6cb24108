#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

#include "fieldrun/network/tubing.h"

namespace gantry::fieldrun {

struct NetworkWell;

/// The lift curves of one tubing at one head pressure (psig), for all the wells that share it: foot
/// pressures on a grid over how much flows, its water cut and its share of gas, with cubics
/// between. A grid point is marched down the tubing when it is first needed, and kept.
/// Of foot pressures up to 5,000 psig, 99 in 100 are within 3 psi of the march and all within 10;
/// they follow from the rates alone, whatever was asked before. Refers to the tubing, which must
/// outlive it. One thread.
class LiftTable {
 public:
  LiftTable(const TubingSpec& tubing, const Gravities& gravities, double headPressure);

  /// As `TubingColumn::FootPressure`, which also answers beyond the grid: below a barrel a day and
  /// above a million.
  double FootPressure(const Rates& rates);

  /// The four points of a direction of the grid around a place, and what each has to say there.
  struct Stencil {
    size_t first;
    std::array<double, 4> weights;
  };

 private:
  /// Not a number where a point is still missing.
  double Interpolate(const Stencil& flow, const Stencil& waterCut, const Stencil& gas) const;
  /// Fills in the points of a cell, of which these are the first.
  void March(size_t flow, size_t waterCut, size_t gas);

  double headPressure_;
  TubingColumn column_;
  std::vector<double> nodes_;  ///< logarithms of psia; not a number until it is marched
};

/// The tables of a run, kept from step to step for as long as there are wells for them.
class LiftTables {
 public:
  /// Gives each well its table, where enough wells share one to be worth it.
  void Assign(std::vector<NetworkWell>& wells);

 private:
  /// Tubing, head pressure, and gravities of oil, gas and water in millionths: those of one fluid
  /// differ from well to well by the rounding of units.
  using Key = std::tuple<const TubingSpec*, double, int64_t, int64_t, int64_t>;

  std::map<Key, std::unique_ptr<LiftTable>> tables_;
};

}  // namespace gantry::fieldrun
