#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/connector_records.h"
#include "client/inflow_sweep.h"
#include "client/query_results.h"

namespace gantry {

class IntersectClientBase;
class UnitConverter;

// What is asked of a simulator about its wells and told to it, through a client of either version:
// what a local connector and the controller of a cluster have in common. Numbers are in the
// simulator's units. Answers of the right form with the wrong content are runtime_errors.

std::vector<ConnectorWellStatus> QueryWellStatuses(IntersectClientBase& client);
/// Appends one record for each well, without its inflow.
void QueryWellData(IntersectClientBase& client, const Strings& wells,
                   std::vector<ConnectorWellRecord>& records);
/// One value for each item.
Doubles QueryWellVariables(IntersectClientBase& client, const std::string& well,
                           const Strings& items);

struct InflowRequest {
  int32_t componentCount = 0;
  bool useBottomHolePressure = true;
  double skewness = 1.0;
};
/// Opens the wells and appends ten measured points to each record, which stand in the order of
/// `wells`. The units are those of the simulator, for the rates that it starts from.
void OpenAndMeasureInflow(IntersectClientBase& client, const UnitConverter& units,
                          const Strings& wells, const InflowRequest& request,
                          InflowWorkspace& workspace, std::vector<ConnectorWellRecord>& records,
                          const RecordWork& finish = {});

// Setters in the user's name. With no wells nothing is sent.
void SetStatusOfWells(IntersectClientBase& client, const Strings& wells, const Strings& statuses);
void SetUptimeOfWells(IntersectClientBase& client, const Strings& wells, const Doubles& fractions);
void SetConstraintsOfWells(IntersectClientBase& client, const Strings& wells,
                           const std::vector<Strings>& items, const std::vector<Doubles>& values);

}  // namespace gantry
