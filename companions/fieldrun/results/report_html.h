#pragma once

#include <string>

#include "fieldrun/case/case_model.h"
#include "fieldrun/run/run_history.h"

namespace gantry::fieldrun {

/// The report of a run as one HTML page that needs nothing beside itself: field totals, rates and
/// pressures over time, and the inflow of each well at the start and at the end, in the units of
/// the case.
std::string ComposeReport(const CaseModel& model, const RunHistory& history);

/// The style sheet of the page.
extern const char* const kReportStyle;

}  // namespace gantry::fieldrun
