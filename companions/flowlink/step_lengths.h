#pragma once

#include <string>
#include <vector>

namespace gantry::flowlink {

/// True when the deck's own TUNING and NEXTSTEP count: with these options flow alone obeys them.
bool EnablesTuning(const std::vector<std::string>& options);

/// The TUNING by which flow picks its time steps as it does alone with these options. Where tuning
/// is enabled, as the adapter needs it, flow goes by the defaults of this keyword instead: after a
/// failed step it cuts to a tenth rather than a third, and grows by 1.25 rather than 2.
std::string TuningLikeAlone(const std::vector<std::string>& options);

}  // namespace gantry::flowlink
