#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/connector_records.h"
#include "client/message_stream.h"
#include "client/query_results.h"

namespace gantry {

class IntersectClientBase;

// What is asked of a simulator about its wells and told to it, through a client of either version:
// what a local connector and the controller of a cluster have in common. Numbers are in the
// simulator's units. Answers of the right form with the wrong content are runtime_errors.

std::vector<ConnectorWellStatus> QueryWellStatuses(IntersectClientBase& client);
/// The requests for the wells' data and the replies. Whoever asks again and again holds one: the
/// requests are encoded when other wells are asked for, and the replies keep their storage.
struct WellDataWorkspace {
  Strings wells;
  EncodedMessage dataQuery;
  EncodedMessage statusQuery;
  WellQueryResult data;
  WellQueryStringResult statuses;
  std::vector<size_t> statusRows;  ///< for each well of `data`, its row in `statuses`
};

/// One record for each well, without its inflow, from the place `begin` on. Records that stand
/// there are written over; their inflow stays.
void QueryWellData(IntersectClientBase& client, const Strings& wells, WellDataWorkspace& workspace,
                   size_t begin, std::vector<ConnectorWellRecord>& records);
/// One value for each item.
Doubles QueryWellVariables(IntersectClientBase& client, const std::string& well,
                           const Strings& items);

// Setters in the user's name. With no wells nothing is sent.
void SetStatusOfWells(IntersectClientBase& client, const Strings& wells, const Strings& statuses);
void SetUptimeOfWells(IntersectClientBase& client, const Strings& wells, const Doubles& fractions);
void SetConstraintsOfWells(IntersectClientBase& client, const Strings& wells,
                           const std::vector<Strings>& items, const std::vector<Doubles>& values);

}  // namespace gantry
