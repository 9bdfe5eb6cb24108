#pragma once

#include <string>
#include <vector>

#include "client/query_results.h"

namespace gantry::v2017_2 {

class IntersectClient;

// What wells inject, in the words that simulators from 2017.2 on know.

/// Attaches a new gas source to a well; false when the simulator reports a zero result.
bool AttachInjectionSource(IntersectClient& client, const std::string& well,
                           const std::string& source);
/// Sets the mole fractions of each source, one message for each.
void SetSourceCompositions(IntersectClient& client, const Strings& sources,
                           const std::vector<Doubles>& fractions);

}  // namespace gantry::v2017_2
