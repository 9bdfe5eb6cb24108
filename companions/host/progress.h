#pragma once

#include <cstdio>

#include "host/field_totals.h"
#include "host/run_record.h"

namespace gantry::fieldrun {

/// What a user sees of a run: one line for each step on standard output and, on a terminal, a bar
/// below it on standard error. Warnings go to standard error whether there is a table or not.
class Progress : public RunListener {
 public:
  Progress(UnitSystem units, bool showsTable, bool showsBar);

  void Started(const RunStart& start) override;
  void StepBegins(size_t step) override;
  void StepDone(const StepRecord& record) override;
  void Ended(const RunEnd& end) override;
  void Notice(const std::string& text) override;
  void Warned(const RunWarning& warning) override;

 private:
  void ClearBar();
  std::string Shown(double value, Quantity quantity, int digits) const;

  UnitSystem units_;
  bool showsTable_;
  bool showsBar_;
  size_t stepCount_ = 0;
  std::vector<RunWell> wells_;
};

}  // namespace gantry::fieldrun
