#pragma once

#include <vector>

#include "client/connector_records.h"
#include "wells/source.h"

namespace gantry {

/// Puts what the connector says about a well into its live record: state, inflow table, gravities.
void FillSource(Source& source, const ConnectorWellRecord& record);

/// Does so for all records, in their order. False when one names a well that isn't in the list:
/// those before it have been filled.
bool FillSources(SourceList& sources, const std::vector<ConnectorWellRecord>& records);

/// The live records of the wells as the simulator lists them.
SourceList MakeSources(const std::vector<ConnectorWellStatus>& statuses);

}  // namespace gantry
