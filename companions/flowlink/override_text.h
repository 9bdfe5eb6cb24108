#pragma once

#include <span>
#include <string>

#include "flowlink/report_times.h"
#include "flowlink/well_orders.h"

namespace gantry::flowlink {

/// What tells a user that an order of the deck gives way to the host for these wells, of which the
/// deck's limits of some kinds are kept (`keep` of the settings).
std::string OverrideText(const WellOrder& order, DeckTime start, const std::string& wells,
                         std::span<const std::string> kept);

}  // namespace gantry::flowlink
