#pragma once

#include <string>
#include <vector>

#include "fieldrun/case/case_model.h"

namespace gantry::fieldrun {

/// The steps of a run: their lengths in days, and the day on which each begins.
struct Schedule {
  Date start;
  std::vector<double> lengths;

  /// Days from the start of the run to the start of a step, or to the run's end.
  double DaysBefore(size_t step) const;
  /// The calendar day on which that falls.
  Date DateBefore(size_t step) const;
};

/// Lays the steps out from `start`. The last one is cut to end where the run ends, and one within
/// which the day of an event begins is cut in two there. A run of more than a million steps, and an
/// event that lies outside the run, are refused. Throws CaseError.
Schedule PlanSteps(const CaseModel& model, const Date& start);

}  // namespace gantry::fieldrun
