#pragma once

#include "fieldrun/results/result_folder.h"
#include "fieldrun/results/result_tables.h"
#include "fieldrun/results/resume_file.h"
#include "fieldrun/results/run_file.h"
#include "fieldrun/run/run_history.h"

namespace gantry::fieldrun {

/// The files of a run but its report, in the case's folder of results. They begin together, in
/// place of an earlier run's, or go on together.
class RunResults : public RunListener {
 public:
  /// The model must outlive the object. Throws as ResultFolder does.
  explicit RunResults(const CaseModel& model);

  /// For a run that goes on: its tables go on behind the steps that are done, and the warnings
  /// behind those of these steps.
  void GoOn(const std::vector<RunWarning>& warned) { file_.GoOn(warned); }

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;
  void Remembered(const RunMemory& memory) override {
    resume_.Write(memory, program_, file_.Warnings().size());
  }
  void Timed(std::optional<size_t> step, const StepTimes& times) override {
    tables_.Timed(step, times);
  }
  void Ended(const RunEnd& end) override { file_.Ended(end); }
  void Warned(const RunWarning& warning) override { file_.Warned(warning); }

 private:
  ResultFolder folder_;
  RunFile file_;
  ResultTables tables_;
  ResumeFile resume_;
  std::string program_;  ///< the simulator's
};

/// Writes the report into the case's folder of results. Throws runtime_error when it can't be
/// written whole.
void WriteReport(const CaseModel& model, const RunHistory& history);

/// Has the summary files written from the tables in the case's folder of results, where the program
/// that does so stands beside this one. Throws runtime_error when it can't.
void WriteSummary(const CaseModel& model);

}  // namespace gantry::fieldrun
