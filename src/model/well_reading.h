#pragma once

#include <vector>

#include "client/connector_records.h"
#include "wells/source.h"

namespace gantry {

/// Puts what the connector says about a well into its live record: state, inflow table, gravities.
/// The lists of the table are taken over; the record is left with those of the reading before.
void FillSource(Source& source, ConnectorWellRecord& record);

/// Does so for all records, in their order. False when one names a well that isn't in the list:
/// those before it have been filled. `places` keeps where the well of each record was found, for
/// the next reading of the same list, and is empty before the first.
bool FillSources(SourceList& sources, std::vector<ConnectorWellRecord>& records,
                 std::vector<size_t>& places);

/// The live records of the wells as the simulator lists them.
SourceList MakeSources(const std::vector<ConnectorWellStatus>& statuses);

}  // namespace gantry
