#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "client/connector_records.h"
#include "client/query_results.h"

namespace gantry {

class IntersectClientBase;

inline constexpr int kSweepRungs = 10;

/// What a sweep is to measure, in the simulator's units.
struct InflowSweepRequest {
  int32_t componentCount = 0;
  bool useBottomHolePressure = true;
  double skewness = 1.0;       ///< above 1 packs the points towards low rates
  double firstLiquidRate = 0;  ///< of the first rung; so high that the well's other limits decide
  double firstGasRate = 0;
};

/// The replies of a sweep, kept until the ladder is done. Whoever measures again and again holds
/// one, so that its storage, which is large with many wells, is found once.
struct InflowWorkspace {
  struct Rung {
    RowTable<double> values;
    std::vector<size_t> rows;     ///< for each record, the place of its row in `values`
    std::vector<size_t> columns;  ///< for each item asked for, its place in a row
  };

  WellQueryResult reply;
  std::array<Rung, kSweepRungs> rungs;
};

/// Measures the inflow of `wells` by forcing each through a ladder of ten rate constraints while
/// the simulator stands still, and appends ten raw points (the simulator's units) to the record of
/// its name. The wells must be open. The constraints of the last rung stay in force.
/// Throws runtime_error for answers of the right form with the wrong content.
void MeasureInflow(IntersectClientBase& client, const Strings& wells,
                   const InflowSweepRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records);

}  // namespace gantry
