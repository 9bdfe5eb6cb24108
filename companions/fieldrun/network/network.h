#pragma once

#include <string>
#include <utility>
#include <vector>

#include "fieldrun/case/case_model.h"
#include "fieldrun/network/inflow_curve.h"
#include "fieldrun/network/lift_table.h"
#include "fieldrun/network/tubing.h"

namespace gantry::fieldrun {

/// What the network decides for one well.
struct OperatingPoint {
  bool isOpen = false;
  double pressure = 0;  ///< bottom hole, psig
  Rates rates;
  std::string limitedBy;  ///< what holds the well where it is, or why it is shut
};

/// One well of the network as the solver sees it in one step.
struct NetworkWell {
  NetworkWell(const WellSpec& wellSpec, InflowCurve inflow)
      : spec(&wellSpec), curve(std::move(inflow)) {}

  const WellSpec* spec;
  InflowCurve curve;
  const TubingSpec* tubing = nullptr;  ///< null: no lift curve
  double manifoldPressure = 0;
  double artificialLift = 0;  ///< at which the tubing's lift table is read, in the table's units
  Gravities gravities;
  LiftTable* lift = nullptr;  ///< of that tubing, pressure and gravities; null: each is computed

  double opening = 0;  ///< place on the curve, found by the solver
  bool isOpen = false;
  std::string limitedBy;

  OperatingPoint Point() const;
};

/// A limit of a group that was in force.
struct GroupLimitReport {
  std::string group;
  std::string limit;  ///< "liquid", "gas injection", ...
  double before = 0;  ///< sum that the wells would have made
  double after = 0;   ///< sum that they are left with
};

/// Finds the operating point of each well: a producer's is the stable meeting of inflow and lift
/// curve, held back by its own limits; an injector's is its rate or pressure target. Then brings
/// every group to its limits, in the order of `groups`. Cost grows linearly with the wells, but for
/// a sort within a group that ranks.
std::vector<GroupLimitReport> SolveNetwork(std::vector<NetworkWell>& wells,
                                           const std::vector<GroupSpec>& groups);

/// The operating point of one well for itself, without any group.
void SolveWell(NetworkWell& well);

/// The pressure that a well's tubing needs at its foot to carry each of these rates (psig); not a
/// number where nothing flows. Empty for a well without a tubing.
std::vector<double> LiftAlong(const NetworkWell& well, const std::vector<InflowPoint>& points);

/// A producer held so far below what its tubing can carry that the flow would die is shut.
void ShutIfLoadedUp(NetworkWell& well);

}  // namespace gantry::fieldrun
