#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "fieldrun/run/field_totals.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// The bar of a run in its step `step` of `stepCount`, from 0, which begins on `date`. `before` and
/// `within` are the seconds that the run has taken up to this step and in it: by those, the time
/// that is left is told from the second step on. A run that was resumed begins with `firstStep`.
std::string ProgressBar(size_t step, size_t stepCount, const Date& date, double before,
                        double within, size_t firstStep = 0);

/// What a user sees of a run: one line for each step on standard output and, on a terminal, a bar
/// below it on standard error, from the first step to the run's end. A thread of its own draws the
/// bar anew each second, since the simulator may work on one step for hours; all else is called
/// from the thread of the run.
class Progress : public RunListener {
 public:
  Progress(UnitSystem units, bool showsTable, bool showsBar);
  ~Progress() override;

  void Started(const RunStart& start) override;
  void StepBegins(size_t step, const Date& date) override;
  void StepDone(const StepRecord& record) override;
  void Ended(const RunEnd& end) override;
  void Notice(const std::string& text) override;
  void Warned(const RunWarning& warning) override;

  /// Does something that writes to the terminal, with the bar out of its way.
  void Aside(const std::function<void()>& action);

 private:
  using Clock = std::chrono::steady_clock;

  void Draw() const;
  void DrawEachSecond(const std::stop_token& stop);
  void StopBar();
  void TellUnshownWarnings() const;
  void PrintRow(const StepRecord& record) const;
  std::string Shown(double value, Quantity quantity, int digits) const;

  UnitSystem units_;
  bool showsTable_;
  bool showsBar_;
  size_t stepCount_ = 0;
  size_t firstStep_ = 0;
  std::vector<RunWell> wells_;
  size_t warnings_ = 0;

  std::mutex mutex_;  ///< of the terminal, and of what the bar shows
  std::condition_variable_any wake_;
  bool isShown_ = false;
  size_t step_ = 0;
  Date date_;
  Clock::time_point runBegan_;
  Clock::time_point stepBegan_;
  std::jthread drawer_;
};

}  // namespace gantry::fieldrun
