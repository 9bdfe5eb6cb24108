#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// Asks the module for the cumulative volumes of the connected wells, by publishing them. To be
/// called before the simulator starts.
void PublishTotals(DriverModel& model, const CaseModel& caseModel);

/// Reads a published variable, in the units in which the module gives it. Throws DriverFailure.
using ReadVariable = std::function<double(int handle)>;

/// What each well has made or taken since a run began, by the simulator's own count. A well of
/// which it tells none, or no sound number, is counted by its reported rates times the length of
/// the step, and there is a warning. The module gives six digits. Belongs to one run.
class WellTotals {
 public:
  using Warn = std::function<void(const RunWarning&)>;
  WellTotals(const std::vector<RunWell>& wells, const std::vector<PublishedVariable>& published,
             ReadVariable read, Warn warn);

  /// Reads what the simulator has counted before the run's first day.
  void Begin(const Date& firstDay);
  /// In place of `Begin`, for a run that goes on.
  void GoOn(const std::vector<WellCount>& counts);
  std::vector<WellCount> Counts() const;
  /// Sets the totals in a step that has been run. They are no numbers for a well of which nothing
  /// tells what it has made.
  void Count(StepRecord& record);

 private:
  static constexpr size_t kPhases = 3;  // oil, water, gas, as in Rates
  struct Well : WellCount {
    const WellSpec* spec;
    std::array<int, kPhases> handles;
  };

  Rates Read(const Well& well) const;
  void WarnOf(const std::string& well, const Date& date, const std::string& reason) const;
  bool Measure(Well& well, const WellStep& step);
  void CountWells(StepRecord& record);
  void CheckLength(const StepRecord& record);

  std::vector<Well> wells_;
  ReadVariable read_;
  Warn warn_;
};

}  // namespace gantry::fieldrun
