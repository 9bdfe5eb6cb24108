#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "client/connector_records.h"
#include "client/intersect_client.h"
#include "client/query_results.h"
#include "client/unit_converter.h"

namespace gantry {

inline constexpr int kSweepRungs = 10;

/// What a sweep is to measure.
struct InflowRequest {
  int32_t componentCount = 0;
  bool useBottomHolePressure = true;
  double skewness = 1.0;       ///< above 1 packs the points towards low rates
  bool inDriverUnits = false;  ///< what the points are told in; else the simulator's units
};

/// What the ladder leaves of a well's rates after so many rungs.
inline double ShareAfter(int rungs, double skewness) {
  return std::pow(static_cast<double>(kSweepRungs - rungs) / kSweepRungs, skewness);
}

/// So much that a well's other limits decide, in the simulator's units: the limit of that name from
/// which a sweep starts.
double UnlimitedRate(std::string_view limit, const UnitConverter& units);

struct WellKind;

/// One well on its way down the ladder.
struct Ladder {
  const WellKind* kind = nullptr;
  double baseLiquidRate = 0.0;
  double baseGasRate = 0.0;
};

/// The requests of a sweep, and its replies until the ladder is done. Whoever measures again and
/// again holds one: its storage, which is large with many wells, is found once, and what the same
/// wells need each time is encoded and looked up once.
struct InflowWorkspace {
  Strings wells;  ///< those of the requests
  Strings items;
  EncodedMessage opening;  ///< the order that opens the wells
  EncodedMessage typesQuery;
  EncodedMessage query;
  EncodedConstraints constraints;  ///< of the next rung
  WellQueryStringResult types;
  std::vector<size_t> typeRows;  ///< for each well, its row in `types`
  std::vector<Ladder> ladders;   ///< for each well

  Strings recordNames;
  std::vector<size_t> wellOfRecord;  ///< for each record, its place among the wells, or none
  WellQueryResult reply;
  std::vector<size_t> replyRows;  ///< for each record, its row in `reply`
  bool inOrder = false;           ///< `reply` has a row for each record, in their order

  /// For each rung a row for each record, its elements in the order of the items.
  std::array<EvenRows<double>, kSweepRungs> rungs;
};

/// Measures the inflow of `wells`: opens them, forces each through a ladder of ten rate constraints
/// while the simulator stands still, and appends ten points to the record of its name. `units` are
/// those of the simulator. The constraints of the last rung stay in force.
/// Throws runtime_error for answers of the right form with the wrong content.
void MeasureInflow(IntersectClientBase& client, const UnitConverter& units, const Strings& wells,
                   const InflowRequest& request, InflowWorkspace& workspace,
                   std::vector<ConnectorWellRecord>& records);

}  // namespace gantry
