#pragma once

#include <memory>

#include "boundary/records.h"
#include "client/connector_records.h"

namespace gantry {

/// The host's record of a fluid, or null for a fluid of no or of more than 100 components. Filling
/// it takes time, so it is made once for each start and copied for each well.
std::unique_ptr<const FluidModelRecord> MakeFluidRecord(const EOSProperties& fluid);

/// Copies what the driver says about a fluid; the host's own bytes of `to` stay.
void CopyFluidRecord(const FluidModelRecord& from, FluidModelRecord& to);

}  // namespace gantry
