#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "described_toml/near_word.h"
#include "fieldrun/case/case_keys.h"
#include "fieldrun/case/case_reader.h"
#include "fieldrun/case/condition.h"
#include "fieldrun/case/shown_value.h"
#include "fieldrun/case/unknown_name.h"

namespace gantry::fieldrun {
namespace {

/// The checks of the events of one case. What is wrong is gathered.
class EventCheck {
 public:
  EventCheck(const CaseModel& model, std::vector<Finding>& findings)
      : model_(model), findings_(findings) {
    for (const WellSpec& well : model.wells) wells_.emplace(well.name, &well);
  }

  void All();

 private:
  void Occasion(const EventSpec& event);
  bool KnowsTargets(const EventSpec& event);
  bool KnowsWell(const EventSpec& event, const char* key, const std::string& name);
  void Action(const EventSpec& event);
  void Changes(const EventSpec& event);
  void ChangeOfWells(const EventSpec& event, const Key& key);
  void Removals(const EventSpec& event);
  void Tubing(const EventSpec& event);
  void Drills(const EventSpec& event);
  void Contradictions(const EventSpec& event);
  void Claim(const EventSpec& event, const std::string& target, const std::string& what,
             const std::string& value);
  void Fail(int line, const std::string& reason) { findings_.push_back({line, reason}); }

  const CaseModel& model_;
  std::vector<Finding>& findings_;
  std::map<std::string, const WellSpec*> wells_;
  std::map<std::string, const EventSpec*> drills_;  ///< of wells, by their names
  /// What the events of a day settle: day, target and what; by which event, and to which value.
  std::map<std::tuple<int, std::string, std::string>, std::pair<int, std::string>> claims_;
};

void EventCheck::Occasion(const EventSpec& event) {
  if (event.date.has_value() == event.Gives("when")) {
    return Fail(event.line, "an event needs either a date or, with when, a condition");
  }
  try {
    if (event.Gives("when")) ParseCondition(model_, event);
  } catch (const CaseError& error) {
    findings_.insert(findings_.end(), error.Findings.begin(), error.Findings.end());
  }
  if (!event.date) return;
  const TimeSpec& time = model_.time;
  if (time.start && *event.date < *time.start) {
    Fail(event.LineOf("date"), "date lies before the start of the run");
  }
  if (time.end && !(*event.date < *time.end)) {
    Fail(event.LineOf("date"), "date doesn't lie before the end of the run");
  }
}

bool EventCheck::KnowsWell(const EventSpec& event, const char* key, const std::string& name) {
  const auto found = wells_.find(name);
  if (found != wells_.end() && found->second->connected) return true;
  Fail(event.LineOf(key), found == wells_.end() ? UnknownName("well", name, model_.wells)
                                                : fmt::format("well \"{}\" isn't connected", name));
  return false;
}

bool EventCheck::KnowsTargets(const EventSpec& event) {
  const int ways = (event.Gives("well") ? 1 : 0) + (event.Gives("wells") ? 1 : 0) +
                   (event.Gives("group") ? 1 : 0);
  if (ways > 1) {
    Fail(event.line, "an event takes one of the keys well, wells and group");
    return false;
  }
  bool isKnown = true;
  if (event.Gives("well")) isKnown = KnowsWell(event, "well", event.well);
  for (const std::string& name : event.wells) {
    isKnown = KnowsWell(event, "wells", name) && isKnown;
  }
  if (!event.Gives("group")) return isKnown;
  if (std::ranges::find(model_.groups, event.group, &GroupSpec::name) != model_.groups.end()) {
    // What its own list has wrong is told of there.
    return std::ranges::all_of(model_.WellsOf(event),
                               [&](const std::string& well) { return wells_.contains(well); });
  }
  Fail(event.LineOf("group"), UnknownName("group", event.group, model_.groups));
  return false;
}

void EventCheck::Action(const EventSpec& event) {
  if (event.Action() == EventAction::kWorkover) {
    Fail(event.LineOf("action"),
         "no simulator takes a workover from its host: neither a skin nor a productivity can be "
         "told to it; write it into the simulator's own dataset");
  }
  if (event.Action() != EventAction::kDrill) return;
  if (event.IsOfField()) return Fail(event.LineOf("action"), "drill needs the key well or wells");
  for (const std::string& name : model_.WellsOf(event)) {
    const auto [first, isNew] = drills_.emplace(name, &event);
    if (isNew) continue;
    Fail(event.LineOf("action"),
         fmt::format("well \"{}\" is drilled already by the event of line {}", name,
                     first->second->line));
  }
}

// A group passes on to its wells what these can take; a well named must take it itself.
void EventCheck::ChangeOfWells(const EventSpec& event, const Key& key) {
  const int line = event.LineOf(std::string(key.name));
  if (event.IsOfField()) {
    if (key.name == "manifold_pressure") return;
    return Fail(line, fmt::format("{} needs the key well, wells or group", key.name));
  }
  bool isTaken = false;
  for (const std::string& name : model_.WellsOf(event)) {
    const WellSpec& well = *wells_.at(name);
    const bool takes = (key.kinds >> well.kind & 1U) != 0;
    isTaken = isTaken || takes;
    if (takes || event.Gives("group")) continue;
    return Fail(line, fmt::format("{} means nothing for well \"{}\"", key.name, name));
  }
  if (!isTaken) Fail(line, fmt::format("{} means nothing for any of the wells", key.name));
}

void EventCheck::Changes(const EventSpec& event) {
  const bool hasGroup = event.Gives("group");
  bool changes = event.Action() != EventAction::kNone || !event.remove.empty();
  for (const KeyRow<GroupSpec>& row : ChangesOfGroups()) {
    if (!event.Gives(row.about.name)) continue;
    changes = true;
    if (hasGroup || HasKey(ChangesOfWells(), row.about.name)) continue;
    Fail(event.LineOf(std::string(row.about.name)),
         fmt::format("{} is a group's: it needs the key group", row.about.name));
  }
  for (const KeyRow<WellSpec>& row : ChangesOfWells()) {
    if (!event.Gives(row.about.name)) continue;
    changes = true;
    if (!hasGroup || !HasKey(ChangesOfGroups(), row.about.name)) ChangeOfWells(event, row.about);
  }
  if (!changes) Fail(event.line, "the event changes nothing: it needs an action or a new value");
}

template <class Spec>
bool IsLimit(KeyTable<Spec> keys, std::string_view name) {
  return std::ranges::any_of(keys, [&](const KeyRow<Spec>& row) {
    return row.about.name == name &&
           std::holds_alternative<std::optional<double> Spec::*>(row.target);
  });
}

void EventCheck::Removals(const EventSpec& event) {
  for (const std::string& name : event.remove) {
    const bool isOfGroup = event.Gives("group") && IsLimit(ChangesOfGroups(), name);
    const bool isOfWell = !event.IsOfField() && IsLimit(ChangesOfWells(), name);
    if (isOfGroup || isOfWell) continue;
    std::vector<std::string_view> names;
    for (const KeyRow<WellSpec>& row : ChangesOfWells()) {
      if (IsLimit(ChangesOfWells(), row.about.name)) names.push_back(row.about.name);
    }
    Fail(event.LineOf("remove"), fmt::format("\"{}\" is no limit that can be removed here{}", name,
                                             toml_reader::DidYouMean(name, names)));
  }
}

void EventCheck::Tubing(const EventSpec& event) {
  const std::string& tubing = event.wellChange.tubing;
  if (tubing.empty()) return;
  if (model_.TubingOf(event.wellChange) == nullptr) {
    return Fail(event.LineOf("tubing"), UnknownName("tubing", tubing, model_.tubings));
  }
  for (const std::string& name : model_.WellsOf(event)) {
    if (CanTake(*wells_.at(name), *model_.TubingOf(event.wellChange))) continue;
    return Fail(event.LineOf("tubing"), fmt::format("tubing \"{}\" isn't for {}", tubing, name));
  }
  if (model_.network.manifoldPressure || event.wellChange.manifoldPressure) return;
  for (const std::string& name : model_.WellsOf(event)) {
    if (wells_.at(name)->manifoldPressure) continue;
    return Fail(event.LineOf("tubing"),
                fmt::format("well \"{}\" needs a manifold_pressure with its tubing", name));
  }
}

// A well that isn't there yet is neither opened nor shut.
void EventCheck::Drills(const EventSpec& event) {
  if (!event.date || event.Action() == EventAction::kNone || event.Gives("group") ||
      event.IsOfField()) {
    return;
  }
  for (const std::string& name : model_.WellsOf(event)) {
    const auto drill = drills_.find(name);
    if (drill == drills_.end() || drill->second == &event || !drill->second->date) continue;
    if (*drill->second->date < *event.date) continue;
    Fail(event.LineOf("action"),
         fmt::format("well \"{}\" is drilled no earlier than {}, by the "
                     "event of line {}",
                     name, ToText(*drill->second->date), drill->second->line));
  }
}

void EventCheck::Claim(const EventSpec& event, const std::string& target, const std::string& what,
                       const std::string& value) {
  const auto key = std::tuple(DayNumber(*event.date), target, what);
  const auto [claim, isNew] = claims_.emplace(key, std::pair(event.line, value));
  if (isNew || claim->second.second == value) return;
  Fail(event.LineOf(what), fmt::format("{} of {} contradicts the event of line {}, on the same day",
                                       what, target, claim->second.first));
}

void EventCheck::Contradictions(const EventSpec& event) {
  if (!event.date) return;
  const bool hasGroup = event.Gives("group");
  for (const KeyRow<GroupSpec>& row : ChangesOfGroups()) {
    if (!hasGroup || !event.Gives(row.about.name)) continue;
    Claim(event, fmt::format("group \"{}\"", event.group), std::string(row.about.name),
          ShownValue(row, event.groupChange, model_.Units()));
  }
  const std::vector<std::string> wells =
      event.IsOfField() ? std::vector<std::string>() : model_.WellsOf(event);
  for (const std::string& name : wells) {
    const std::string target = fmt::format("well \"{}\"", name);
    if (event.Action() != EventAction::kNone) {
      const bool isShut = event.Action() == EventAction::kShut;
      Claim(event, target, "action", isShut ? "shut" : "open");
    }
    for (const KeyRow<WellSpec>& row : ChangesOfWells()) {
      const bool isOfGroup = hasGroup && HasKey(ChangesOfGroups(), row.about.name);
      if (isOfGroup || !event.Gives(row.about.name)) continue;
      Claim(event, target, std::string(row.about.name),
            ShownValue(row, event.wellChange, model_.Units()));
    }
  }
}

void EventCheck::All() {
  std::vector<const EventSpec*> sound;
  for (const EventSpec& event : model_.events) {
    if (!event.isSound) continue;
    Occasion(event);
    if (KnowsTargets(event)) sound.push_back(&event);
  }
  for (const EventSpec* event : sound) {
    Action(*event);
    Changes(*event);
    Removals(*event);
    Tubing(*event);
    Contradictions(*event);
  }
  for (const EventSpec* event : sound) Drills(*event);
}

}  // namespace

void CheckEvents(const CaseModel& model, std::vector<Finding>& findings) {
  EventCheck(model, findings).All();
}

}  // namespace gantry::fieldrun
