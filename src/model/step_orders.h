#pragma once

#include <cstdint>
#include <vector>

#include "client/connector_base.h"
#include "client/query_results.h"
#include "wells/source.h"
#include "wells/static_well_data.h"

namespace gantry {

/// What goes to the simulator before a step: four sets of parallel lists, one for each setter of
/// the connector, so that the number of messages doesn't depend on the number of wells.
struct StepOrders {
  Strings statusWells;
  Strings statuses;
  Strings uptimeWells;
  Doubles uptimes;
  Strings constraintWells;
  std::vector<Strings> items;
  std::vector<Doubles> values;
  std::vector<std::vector<int32_t>> codes;
  Strings injectionSources;
  std::vector<Doubles> compositions;

  /// Drops the orders but for the rows of the constraints, which are there to be written over.
  void Clear();
  /// Sends all four, in the order in which they take effect: a well must be open before its
  /// constraints apply to it. An empty set is sent too.
  void Send(CExtConnectorBase& connector) const;
};

/// How the orders of a step are drawn up.
struct StepRules {
  bool closeUnconnected = false;
  bool compositional = false;
  bool reevaluate = false;  ///< compositional: take the rates from what the host saw of the inflow
};

/// Draws up the orders from the operating points that the host has set. Wells of `sources` that
/// `wells` doesn't know are left out. A re-evaluated operating point keeps its new rates. The
/// orders take the place of what stands in `orders`, whose storage is used again.
void DrawUpOrders(SourceList& sources, const StaticWellDataCollection& wells,
                  const StepRules& rules, StepOrders& orders);

/// Sets the rates of the operating point to those of the host's inflow table at its pressure. False
/// when the well is dead there: it must not be given a rate.
bool Reevaluate(Source& source);

}  // namespace gantry
