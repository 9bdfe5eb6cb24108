#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "client/connector_records.h"
#include "client/intersect_client.h"
#include "client/query_results.h"

namespace gantry {

inline constexpr int kSweepRungs = 10;

/// What a sweep is to measure, in the simulator's units.
struct InflowSweepRequest {
  int32_t componentCount = 0;
  bool useBottomHolePressure = true;
  double skewness = 1.0;       ///< above 1 packs the points towards low rates
  double firstLiquidRate = 0;  ///< of the first rung; so high that the well's other limits decide
  double firstGasRate = 0;
};

/// The requests of a sweep, and its replies until the ladder is done. Whoever measures again and
/// again holds one, so that its storage, which is large with many wells, is found once.
struct InflowWorkspace {
  struct Rung {
    RowTable<double> values;
    std::vector<size_t> rows;     ///< for each record, the place of its row in `values`
    std::vector<size_t> columns;  ///< for each item asked for, its place in a row
  };

  EncodedMessage query;
  EncodedConstraints constraints;  ///< of the next rung
  WellQueryResult reply;
  std::array<Rung, kSweepRungs> rungs;
};

/// What is to be done with a record once it has its points, while these are in the processor's
/// cache.
using RecordWork = std::function<void(ConnectorWellRecord&)>;

/// Measures the inflow of `wells` by forcing each through a ladder of ten rate constraints while
/// the simulator stands still, and appends ten raw points (the simulator's units) to the record of
/// its name. The wells must be open. The constraints of the last rung stay in force.
/// Throws runtime_error for answers of the right form with the wrong content.
void MeasureInflow(IntersectClientBase& client, const Strings& wells,
                   const InflowSweepRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records, const RecordWork& finish = {});

}  // namespace gantry
