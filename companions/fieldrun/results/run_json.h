#pragma once

#include <string>

#include "fieldrun/run/field_totals.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// Tells a run to a program that follows it: a line of JSON on standard output for each event, as
/// it comes. docs/fieldrun.md tells the keys. Numbers are in the units of the case; null where
/// nobody tells them.
class RunJson : public RunListener {
 public:
  /// Must outlive the object.
  explicit RunJson(const CaseModel& model) : model_(model) {}

  void Started(const RunStart& start) override;
  void StepDone(const StepRecord& record) override;
  void Timed(std::optional<size_t> step, const StepTimes& times) override;
  void Ended(const RunEnd& end) override;
  void Warned(const RunWarning& warning) override;

 private:
  const CaseModel& model_;
  std::vector<RunWell> wells_;
  StepTimes times_;  ///< of all so far
};

}  // namespace gantry::fieldrun
