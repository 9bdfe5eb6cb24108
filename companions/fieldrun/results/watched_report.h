#pragma once

#include <chrono>

#include "fieldrun/run/run_history.h"

namespace gantry::fieldrun {

/// Keeps the report up to date while a run goes on. A page that is open in a browser loads itself
/// anew: a small script beside it says how far the run is, and is gone when the last report has
/// been written. Both are written whole each time. Writing takes a tenth of the run's time at most;
/// what can't be written is left to the last report. Called behind the history, and destroyed
/// behind the last report.
class WatchedReport : public RunListener {
 public:
  /// Both must outlive the object.
  WatchedReport(const CaseModel& model, RunHistory& history);
  ~WatchedReport() override;

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;

 private:
  using Clock = std::chrono::steady_clock;

  void WritePage() const;
  void WriteStamp() const;

  const CaseModel& model_;
  RunHistory& history_;
  Clock::time_point isDue_;
};

}  // namespace gantry::fieldrun
