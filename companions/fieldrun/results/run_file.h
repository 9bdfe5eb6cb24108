#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// Keeps run.json, which says what the tables of its folder are of: the run's id, its case, its
/// simulator, its warnings and how it ended. Written whole each time, so that it can be read at any
/// moment. docs/fieldrun.md tells its keys.
class RunFile : public RunListener {
 public:
  /// Both must outlive the object.
  RunFile(const std::string& folder, const CaseModel& model);

  /// In a run that goes on, the warnings of its steps before.
  void GoOn(const std::vector<RunWarning>& warned) { warnings_ = warned; }
  const std::vector<RunWarning>& Warnings() const { return warnings_; }

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;
  void Ended(const RunEnd& end) override;
  void Warned(const RunWarning& warning) override;

 private:
  void Write(const std::optional<RunEnd>& end);

  std::string path_;
  const CaseModel& model_;
  RunStart start_;
  std::vector<RunWarning> warnings_;
  bool isChanged_ = false;
};

/// What run.json tells. The case holds its title, its units and its wells, as a report needs them;
/// `start` points into it.
struct StoredRun {
  CaseModel model;
  RunStart start;
  std::vector<RunWarning> warnings;
  std::optional<RunEnd> end;  ///< none while the run goes on, and when it was killed

  StoredRun() = default;
  StoredRun(StoredRun&&) = default;
  StoredRun& operator=(StoredRun&&) = default;
};

/// Throws CaseError for a file that isn't there, or isn't of a run.
StoredRun ReadRunFile(const std::string& folder);

}  // namespace gantry::fieldrun
