#pragma once

#include <string>
#include <string_view>

#include "fieldrun/case/case_model.h"
#include "fieldrun/run/run_history.h"

namespace gantry::fieldrun {

/// The report of a run as one HTML page that needs nothing beside itself, in the units of the case.
/// With the name of a file beside it that says how far the run is (`WatchedReport`), the page looks
/// at that file and shows itself anew when it changes.
std::string ComposeReport(const CaseModel& model, const RunHistory& history,
                          std::string_view watchedFile = "");

/// The page without its data, as page/ holds it: @TITLE@ and @DATA@ stand for what is missing.
extern const std::string_view kReportPage;

}  // namespace gantry::fieldrun
