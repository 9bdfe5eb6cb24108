#pragma once

#include <vector>

#include "fieldrun/peer_check/rule.h"

namespace gantry::fieldrun {

/// The limit by which a driver holds a well, and the rates that it holds.
struct HeldRate {
  Strings limits;  ///< what the driver sends; the first of them is the one that is tried here
  Strings rates;   ///< their sum may not be above it
};

const HeldRate& HeldRateOf(const PeerWell& well);

/// Asks for numbers of all wells by their names: a row for each well, in the order of the model.
/// What isn't finite, and another order, are a `RuleBroken`.
std::vector<Doubles> AskWells(CheckedSession& session, const Strings& items);

/// The rate of each well that its limit holds.
Doubles AskHeldRates(CheckedSession& session);

/// Opens all wells, and holds each to so much of its limits, in the simulator's units.
void OpenWells(CheckedSession& session);
void LimitWells(CheckedSession& session, const Doubles& firstLimits);
/// To so much that their own limits decide, by the last of their limits alone.
void FreeWells(CheckedSession& session);

/// True for rates that are the same, but for what a solver leaves open.
bool IsNear(double came, double due);

}  // namespace gantry::fieldrun
