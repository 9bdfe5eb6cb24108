#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "fieldrun/driver/driver_model.h"
#include "fieldrun/run/field_state.h"
#include "fieldrun/run/run_checks.h"
#include "fieldrun/run/run_record.h"
#include "fieldrun/run/schedule.h"
#include "fieldrun/run/stopwatch.h"
#include "fieldrun/run/well_totals.h"

namespace gantry::fieldrun {

/// A run that can't be resumed, by no fault of the module; what() says why.
class CannotResume : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A coupled run: the network of a case and the module's simulator in lock-step. Made for one run.
class CoupledRun {
 public:
  CoupledRun(const CaseModel& caseModel, DriverModel& model, RunListener& listener);

  /// Starts the simulator and readies the wells. Throws CaseError or DriverFailure.
  void Start(const std::string& driverName, size_t mostSteps);
  /// In place of that, for a run of this case that goes on behind its last whole step; `mostSteps`
  /// are those from there on, and `warned` what has been warned of. The simulator must have been
  /// told where it is to go on. Throws CannotResume where it doesn't.
  void Resume(const std::string& driverName, size_t mostSteps, const RunMemory& memory,
              const std::vector<RunWarning>& warned);
  /// Runs to the end. A failure of the module ends the run and stands in the result.
  RunEnd Run();

  /// The same a step at a time: what the next step begins with, its wells where the network of the
  /// case wants them; none when the run is over. Throws DriverFailure.
  std::optional<StepRecord> Next();
  /// Runs the step on with the operating points that stand in its record. Throws DriverFailure.
  void Carry(StepRecord record);
  /// Reports the last step and lets the simulator go; a text says why the run ends ahead of its
  /// time.
  RunEnd End(const std::string& failure = {});
  /// What is known since the start.
  const RunStart& Facts() const { return start_; }

  /// Called at the beginning of each step, when the simulator waits.
  std::function<void(size_t step)> atStep;
  /// Called when the run has ended, before anybody is told so.
  std::function<void()> atEnd;
  /// When set, asked before each step; true ends the run there, by its user's wish.
  std::function<bool()> isInterrupted;

 private:
  void CheckComposition(const Located& place, const std::vector<double>& composition) const;
  bool IsInterrupted() const { return isInterrupted && isInterrupted(); }
  void Publish();
  void BringUpSimulator();
  void TakeFacts(const std::string& driverName, size_t mostSteps);
  void ConnectWells(const Date& day);
  void CheckSimulatorStands(const Date& day);
  void MakeTotals();
  void Remember(const RunMemory& memory);
  RunMemory Memory() const;
  double LengthForModule(const StepRecord& record) const;
  void ReadInflow(StepRecord& record);
  void Bring(StepRecord& record);
  void AskForInflow(StepRecord& record);
  void FinishLast();
  void ReportRest();
  void Tell();
  NetworkWell WellOfNetwork(size_t place, StepRecord& record);
  void Solve(StepRecord& record);
  void SendControls(const StepRecord& record);
  void ReportLast();
  void TellLast(bool isWhole);
  void ReportUnread();
  void Warn(const RunWarning& warning);

  const CaseModel& case_;
  DriverModel& model_;
  RunListener& listener_;
  RunStart start_;
  RunEnd end_;
  Schedule schedule_;
  std::vector<DriverInflow> inflow_;   ///< of this step, by place in start_.wells
  std::unique_ptr<FieldState> state_;  ///< from the beginning of the run on
  LiftTables liftTables_;
  StepRecord last_;                   ///< the step that was run
  bool hasLast_ = false;              ///< and isn't reported yet
  std::optional<Date> simulatorDay_;  ///< at which the simulator stood when it came up
  Stopwatch stopwatch_;
  StepTimes timesOfStart_;
  RunWarnings warnings_;
  RunChecks checks_;
  std::unique_ptr<WellTotals> totals_;  ///< from the beginning of the run on
};

}  // namespace gantry::fieldrun
