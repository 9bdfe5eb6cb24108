#pragma once

#include <string>

#include "fieldrun/results/run_file.h"

namespace gantry::fieldrun {

/// Tells a listener of a run as its tables hold it, from its start to its end as far as that is
/// known. A step counts when field.csv has its row. Throws CaseError, with file and line, for a
/// table that isn't of this run or can't be read.
void ReplayRun(const std::string& folder, const StoredRun& run, RunListener& listener);

}  // namespace gantry::fieldrun
