#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "fieldrun/case/case_model.h"
#include "fieldrun/network/network.h"
#include "fieldrun/run/run_memory.h"
#include "fieldrun/run/run_warnings.h"

namespace gantry::fieldrun {

/// A well of the run, by its place in the case and in the module.
struct RunWell {
  const WellSpec* spec = nullptr;
  int handle = 0;  ///< the well's index at the boundary
};

/// What is known before the first step.
struct RunStart {
  std::string id;         ///< that all files of this run carry
  std::string driver;     ///< what the module calls itself
  std::string program;    ///< that runs the dataset, by its path; empty when nobody names it
  std::string simulator;  ///< the same, or the cluster, in words
  std::string deck;       ///< what the module says of the dataset
  Date start;
  double simulatorDays = 0;  ///< that the simulator has run before
  size_t stepCount = 0;
  size_t doneSteps = 0;  ///< before a run that is resumed
  double totalDays = 0;
  std::vector<std::string> components;
  std::vector<RunWell> wells;
  int unconnectedWells = 0;
};

/// Where the time of a step went, in seconds of the clock on the wall.
struct StepTimes {
  double simulator = 0;  ///< the driver waits for the simulator's step
  double sweep = 0;      ///< reading the wells and measuring their inflow at the simulator
  double wire = 0;       ///< the other exchanges with it: totals, and controls that go ahead
  double network = 0;    ///< finding the operating points
  double writing = 0;    ///< all who follow the run: tables, pages, the terminal
  double other = 0;
};

struct TimePart {
  const char* name;
  double StepTimes::*seconds;
};
inline constexpr std::array<TimePart, 6> kTimeParts{{{"simulator", &StepTimes::simulator},
                                                     {"sweep", &StepTimes::sweep},
                                                     {"wire", &StepTimes::wire},
                                                     {"network", &StepTimes::network},
                                                     {"writing", &StepTimes::writing},
                                                     {"other", &StepTimes::other}}};

/// Something that has changed what holds of a well, a group or the field.
struct EventReport {
  Date date;           ///< first day of the step from which on it holds
  std::string cause;   ///< "date", "condition" or "economic limit"
  std::string target;  ///< "well", "group" or "field"
  std::string name;    ///< of the well or group; empty for the field
  std::string what;    ///< "shut", "max_liquid from 300 Sm3/d to 200 Sm3/d"
  std::string reason;  ///< the event's note, the condition or the limit; may be empty
};

/// "P1: shut (water cut above its limit)".
std::string ToText(const EventReport& event);

/// One well in one step.
struct WellStep {
  std::vector<InflowPoint> inflow;  ///< as the module gave it
  std::vector<double> lift;         ///< `LiftAlong` the inflow
  OperatingPoint point;             ///< as the network decided
  Gravities gravities;              ///< that the tubing was computed with
  double uptime = 1;                ///< part of the step
  std::string tubing;               ///< by its name; empty when it has none
  double manifoldPressure = 0;      ///< psig, with a tubing
  double artificialLift = 0;        ///< at which a lift table was read, in the table's units
  /// The state that the simulator reports when the step is over; none when it tells no sound one.
  std::optional<InflowPoint> reported;
  /// Made or injected since the start of the run. STB, MMscf.
  Rates total = kUnknownRates;
  bool isTotalMeasured = false;  ///< by the simulator's own count, else by reported rates

  /// The well's rates at the end of the step, as far as anybody tells.
  Rates Made() const {
    if (!point.isOpen) return {};
    return reported ? reported->rates : kUnknownRates;
  }
};

struct StepRecord {
  size_t step = 0;
  Date date;        ///< on which the step begins
  double days = 0;  ///< from the start of the run to the start of the step
  double length = 0;
  std::vector<WellStep> wells;  ///< in the order of RunStart
  std::vector<GroupLimitReport> groups;
  StepTimes times;
  std::vector<EventReport> events;  ///< that hold from its beginning on
};

/// How a run came to its end.
struct RunEnd {
  size_t steps = 0;
  bool endedBySimulator = false;
  std::string failure;  ///< the module's own text; empty for a run that went well
  std::vector<RunWarning> warnings{};
  bool endedByUser = false;
};

/// Whoever follows a run: the tables, the report, the terminal.
class RunListener {
 public:
  virtual ~RunListener() = default;
  virtual void Started(const RunStart& start) = 0;
  /// `date` is the day on which the step begins.
  virtual void StepBegins(size_t /*step*/, const Date& /*date*/) {}
  virtual void StepDone(const StepRecord& record) = 0;
  /// What a step took, of `StepRecord::step`, when all have been told that it is done. Once before,
  /// without a step, what came ahead of the first one, and of the first after a resumption.
  virtual void Timed(std::optional<size_t> /*step*/, const StepTimes& /*times*/) {}
  /// What a run has to remember to go on behind a step, once all have been told that it is done.
  /// Not called for a step of which nobody tells what it has made.
  virtual void Remembered(const RunMemory& /*memory*/) {}
  virtual void Ended(const RunEnd& /*end*/) {}
  virtual void Notice(const std::string& /*text*/) {}
  /// Called once for each topic and well; RunEnd has them all.
  virtual void Warned(const RunWarning& /*warning*/) {}
};

}  // namespace gantry::fieldrun
