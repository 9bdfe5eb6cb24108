#pragma once

#include <map>
#include <string>
#include <vector>

#include "fieldrun/case/condition.h"
#include "fieldrun/run/run_record.h"

namespace gantry::fieldrun {

/// What holds of the wells, the groups and the field in a step. It begins as the case has it and is
/// changed by one mechanism alone: by what happens, be it an event of the case on its day, one
/// whose condition has come true, or a well that has passed an economic limit. Belongs to one run,
/// whose case and wells must outlive it.
class FieldState {
 public:
  FieldState(const CaseModel& caseModel, const std::vector<RunWell>& wells);

  /// Brings about all that is due before a step that begins on that day, and tells it. `before` is
  /// the step that has just been run, which conditions and economic limits look at; null when there
  /// is none.
  std::vector<EventReport> Begin(const Date& date, const StepRecord* before);

  /// All that has come about so far, and the same brought about anew in a run that goes on.
  const std::vector<Happening>& Happenings() const { return happenings_; }
  void GoOn(const std::vector<Happening>& happenings);

  /// A well by its place in the run.
  const WellSpec& Well(size_t place) const { return wells_[place].spec; }
  const std::vector<GroupSpec>& Groups() const { return groups_; }
  double ManifoldPressureOf(size_t place) const;
  /// Why a well is kept shut; empty while it isn't.
  const std::string& ShutBy(size_t place) const { return wells_[place].shutBy; }
  /// Shut in its completions, not only at the surface.
  bool IsShutForGood(size_t place) const { return wells_[place].isForGood; }

 private:
  struct StateOfWell {
    WellSpec spec;
    std::string shutBy;
    bool isForGood = false;
  };
  struct Pending {
    const EventSpec* event;
    Condition condition;  ///< of an event without a date
  };

  void Plan(const EventSpec& event);
  void Retire(const Date& date, const StepRecord& before, std::vector<EventReport>& reports);
  void ShutForGood(size_t place, const std::string& reason);
  void Apply(const EventSpec& event, const EventReport& cause, std::vector<EventReport>& reports);
  void ApplyToField(const EventSpec& event, const EventReport& cause,
                    std::vector<EventReport>& reports);
  void ApplyToGroup(const EventSpec& event, EventReport report, std::vector<EventReport>& reports);
  void ApplyToWell(const EventSpec& event, size_t place, EventReport report,
                   std::vector<EventReport>& reports);
  Standing StandingOf(size_t place, const StepRecord& record) const;
  Standing StandingOf(const Condition& condition, const StepRecord& record) const;
  EventReport CauseOf(const Pending& pending, const Date& date, const StepRecord* before) const;
  std::vector<std::string> MembersOf(const std::string& group) const;

  const CaseModel& case_;
  std::vector<StateOfWell> wells_;
  std::map<std::string, size_t> places_;  ///< of wells, by their names
  std::vector<GroupSpec> groups_;
  double manifoldPressure_;
  std::vector<Happening> happenings_;
  std::vector<Pending> dated_;        ///< in the order of their days, then of the file
  std::vector<Pending> conditional_;  ///< in the order of the file
};

}  // namespace gantry::fieldrun
