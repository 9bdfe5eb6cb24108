#pragma once

#include <nlohmann/json_fwd.hpp>

#include "fieldrun/case/case_model.h"
#include "fieldrun/run/run_history.h"

namespace gantry::fieldrun {

/// All that the report shows of a run, for the page's own script, which tells what it reads in
/// page/data.js. In the units of the case; long columns are packed.
nlohmann::ordered_json ReportData(const CaseModel& model, const RunHistory& history);

}  // namespace gantry::fieldrun
