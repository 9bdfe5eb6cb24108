#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "fieldrun/run/field_totals.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// One well of one step, as short as the report needs it.
struct WellMoment {  // not a number where nothing tells it
  size_t held = 0;   ///< place in RunHistory::holds
  double pressure = 0;
  Rates rates;
};

struct WellHistory {
  std::vector<WellMoment> moments;  ///< one for each step
  Rates total;                      ///< STB, MMscf, as far as it is told
  double pressure = 0;              ///< at the end, as far as it is told
  double daysOpen = 0;
};

/// Not a number where nothing tells it.
struct FieldMoment {
  double endDays = 0;  ///< from the start of the run to the end of the step
  FieldRates rates;
  FieldTotals totals;
};

/// What holds a well where it is, or why it is shut.
struct Hold {
  std::string reason;
  bool isOpen = false;

  bool operator<(const Hold& other) const {
    return std::tie(reason, isOpen) < std::tie(other.reason, other.isOpen);
  }
};

/// A limit of a group, and when it was in force.
struct GroupHistory {
  std::string group;
  std::string limit;
  std::map<size_t, double> before;  ///< by step: what the wells would have made without it
};

/// What the report shows of a run, kept while it goes.
class RunHistory : public RunListener {
 public:
  void Started(const RunStart& runStart) override;
  void StepDone(const StepRecord& record) override;
  void Timed(std::optional<size_t> step, const StepTimes& stepTimes) override;
  void Ended(const RunEnd& runEnd) override;
  void Warned(const RunWarning& warning) override { warnings.push_back(warning); }

  RunStart start;
  RunEnd end;
  bool hasEnded = false;
  bool isGoingOn = false;  ///< known to the one who reads a run from its tables
  std::vector<FieldMoment> field;
  FieldRates rates;                ///< the last that are told
  FieldTotals totals;              ///< the same
  std::vector<WellHistory> wells;  ///< in the order of start.wells
  std::vector<Hold> holds;         ///< each once
  std::vector<GroupHistory> groups;
  std::vector<RunWarning> warnings;
  std::vector<std::pair<double, EventReport>> events;  ///< behind the days at which they hold
  /// The steps with their curves: all of them, or of a long run with many wells some, evenly
  /// spread, and the last.
  std::vector<StepRecord> curves;
  StepTimes timesOfStart;        ///< of all starts, where the run was resumed
  std::vector<StepTimes> times;  ///< by step; empty where nobody has measured them

 private:
  void AddWell(size_t place, const StepRecord& record);
  void AddGroup(size_t step, const GroupLimitReport& report);
  void AddCurves(const StepRecord& record);
  size_t PlaceOf(const Hold& hold);

  std::map<Hold, size_t> places_;
  size_t stride_ = 1;  ///< of the steps whose curves are kept
};

}  // namespace gantry::fieldrun
