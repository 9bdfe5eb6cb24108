#pragma once

#include <string>
#include <vector>

#include "fieldrun/run/field_totals.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// One well of one step, as short as the report needs it.
struct WellMoment {  // not a number where nothing tells it
  bool isOpen = false;
  double pressure = 0;
  Rates rates;
};

/// The inflow of a well in one step, with the operating point on it.
struct InflowMoment {
  Date date;
  std::vector<InflowPoint> inflow;
  OperatingPoint point;
  Gravities gravities;
};

struct WellHistory {
  std::vector<WellMoment> moments;  ///< one for each step
  InflowMoment first;               ///< the first and the last step that had an inflow
  InflowMoment last;
  Rates total;          ///< STB, MMscf, as far as it is told
  double pressure = 0;  ///< at the end, as far as it is told
  double daysOpen = 0;
  std::string limitedBy;  ///< in the last step
};

/// Not a number where nothing tells it.
struct FieldMoment {
  double endDays = 0;  ///< from the start of the run to the end of the step
  FieldRates rates;
  FieldTotals totals;
};

/// How often a group's limit was in force.
struct GroupHistory {
  std::string group;
  std::string limit;
  int steps = 0;
  double mostBefore = 0;
};

/// What the report shows of a run, kept while it goes.
class RunHistory : public RunListener {
 public:
  void Started(const RunStart& runStart) override;
  void StepDone(const StepRecord& record) override;
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
  std::vector<GroupHistory> groups;
  std::vector<RunWarning> warnings;

 private:
  void AddWell(size_t place, const StepRecord& record);
  void AddGroup(const GroupLimitReport& report);
};

}  // namespace gantry::fieldrun
