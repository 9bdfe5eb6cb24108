#include "fieldrun/run/field_state.h"

#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "fieldrun/case/shown_value.h"

namespace gantry::fieldrun {
namespace {

constexpr const char* kNotDrilled = "not drilled yet";
constexpr const char* kShut = "shut by an event";

/// What shuts a producer for good once it has made too little or too much of something in a step.
struct EconomicLimit {
  std::string_view measure;
  std::optional<double> WellSpec::*limit;
  bool isAbove;
  const char* reason;
};

constexpr EconomicLimit kEconomicLimits[] = {
    {"oil", &WellSpec::minOil, false, "oil below its economic limit"},
    {"water_cut", &WellSpec::maxWaterCut, true, "water cut above its limit"},
    {"gas_oil_ratio", &WellSpec::maxGasOilRatio, true, "gas-oil ratio above its limit"},
};

/// Null while none is passed.
const EconomicLimit* LimitPassed(const WellSpec& well, const Standing& standing) {
  for (const EconomicLimit& limit : kEconomicLimits) {
    const auto& value = well.*(limit.limit);
    if (value &&
        Condition{"", false, FindMeasure(limit.measure), limit.isAbove, *value}.Holds(standing)) {
      return &limit;
    }
  }
  return nullptr;
}

void Add(Standing& sum, const Standing& part) {
  for (const auto number :
       {&Standing::oil, &Standing::water, &Standing::gas, &Standing::waterInjected,
        &Standing::gasInjected, &Standing::totalOil, &Standing::totalWater, &Standing::totalGas,
        &Standing::totalWaterInjected, &Standing::totalGasInjected}) {
    sum.*number += part.*number;
  }
}

/// "max_oil from 300 STB/d to 200 STB/d", "max_oil 200 STB/d", "max_oil 300 STB/d removed".
std::string ChangeText(std::string_view name, const std::string& before, const std::string& after) {
  constexpr const char* kNone = "none";
  if (before == kNone) return fmt::format("{} {}", name, after);
  if (after == kNone) return fmt::format("{} {} removed", name, before);
  return fmt::format("{} from {} to {}", name, before, after);
}

/// Puts the values that an event gives, or takes away, in the place of the old ones. The answer is
/// what has changed, a text for each.
template <class Spec>
std::vector<std::string> TakeOver(KeyTable<Spec> keys, const EventSpec& event, const Spec& change,
                                  Spec& spec, UnitSystem units) {
  std::vector<std::string> changes;
  for (const KeyRow<Spec>& row : keys) {
    const std::string_view name = row.about.name;
    const bool isRemoved = std::ranges::find(event.remove, name) != event.remove.end();
    if (!isRemoved && !event.Gives(name)) continue;
    const std::string before = ShownValue(row, spec, units);
    const Spec& from = isRemoved ? Spec() : change;
    std::visit([&](auto member) { spec.*member = from.*member; }, row.target);
    const std::string after = ShownValue(row, spec, units);
    if (before != after) changes.push_back(ChangeText(name, before, after));
  }
  return changes;
}

/// The keys of a well that an event of its group means for the well.
bool IsForWells(const EventSpec& event, const KeyRow<WellSpec>& row, const WellSpec& well) {
  const bool isTaken = (row.about.kinds >> well.kind & 1U) != 0;
  return isTaken && (event.group.empty() || !HasKey(ChangesOfGroups(), row.about.name));
}

/// An injector goes by a rate or by a pressure, whichever it was given last.
void ForgetOtherTarget(const EventSpec& event, WellSpec& well) {
  if (event.Gives("bottom_hole_pressure")) well.waterRate = well.gasRate = std::nullopt;
  if (event.Gives("water_rate") || event.Gives("gas_rate")) well.bottomHolePressure = std::nullopt;
}

}  // namespace

std::string ToText(const EventReport& event) {
  return fmt::format("{}: {}{}", event.name.empty() ? event.target : event.name, event.what,
                     event.reason.empty() ? "" : fmt::format(" ({})", event.reason));
}

FieldState::FieldState(const CaseModel& caseModel, const std::vector<RunWell>& wells)
    : case_(caseModel),
      groups_(caseModel.groups),
      manifoldPressure_(caseModel.network.manifoldPressure.value_or(0)) {
  for (const RunWell& well : wells) {
    places_.emplace(well.spec->name, wells_.size());
    wells_.push_back({*well.spec, "", false});
  }
  for (const EventSpec& event : case_.events) Plan(event);
  std::ranges::stable_sort(dated_, {}, [](const Pending& p) { return DayNumber(*p.event->date); });
}

void FieldState::Plan(const EventSpec& event) {
  if (event.date) {
    dated_.push_back({&event, {}});
  } else {
    conditional_.push_back({&event, ParseCondition(case_, event)});
  }
  if (event.Action() != EventAction::kDrill) return;
  for (const std::string& name : case_.WellsOf(event)) {
    wells_[places_.at(name)].shutBy = kNotDrilled;
    wells_[places_.at(name)].isForGood = true;
  }
}

double FieldState::ManifoldPressureOf(size_t place) const {
  return Well(place).manifoldPressure.value_or(manifoldPressure_);
}

Standing FieldState::StandingOf(size_t place, const StepRecord& record) const {
  const WellStep& well = record.wells[place];
  const Rates made = well.uptime * well.Made();
  const double pressure = well.reported ? well.reported->pressure : kUnknownRates.oil;
  if (Well(place).IsProducer()) {
    return {made.oil,         made.water,     made.gas, 0, 0,       well.total.oil,
            well.total.water, well.total.gas, 0,        0, pressure};
  }
  return {0, 0, 0, made.water, made.gas, 0, 0, 0, well.total.water, well.total.gas, pressure};
}

std::vector<std::string> FieldState::MembersOf(const std::string& name) const {
  const auto group = std::ranges::find(groups_, name, &GroupSpec::name);
  std::vector<std::string> all;
  for (const auto& [well, place] : places_) all.push_back(well);
  return group == groups_.end() || group->wells.empty() ? all : group->wells;
}

Standing FieldState::StandingOf(const Condition& condition, const StepRecord& record) const {
  if (!condition.isGroup && !condition.subject.empty()) {
    return StandingOf(places_.at(condition.subject), record);
  }
  Standing sum;
  for (const std::string& name : MembersOf(condition.subject)) {
    Add(sum, StandingOf(places_.at(name), record));
  }
  return sum;
}

// A limit looks at what the well makes while it is up.
void FieldState::Retire(const Date& date, const StepRecord& before,
                        std::vector<EventReport>& reports) {
  for (size_t i = 0; i < wells_.size(); ++i) {
    const StateOfWell& well = wells_[i];
    const WellStep& step = before.wells[i];
    if (!well.spec.IsProducer() || !step.point.isOpen) continue;
    const Rates made = step.Made();
    const EconomicLimit* limit = LimitPassed(well.spec, {made.oil, made.water, made.gas});
    if (limit == nullptr) continue;
    ShutForGood(i, limit->reason);
    reports.push_back({date, "economic limit", "well", well.spec.name, "shut", limit->reason});
  }
}

void FieldState::ShutForGood(size_t place, const std::string& reason) {
  wells_.at(place).shutBy = reason;
  wells_.at(place).isForGood = true;
  happenings_.push_back({std::nullopt, place, reason});
}

void FieldState::GoOn(const std::vector<Happening>& happenings) {
  std::vector<EventReport> told;
  for (const Happening& happening : happenings) {
    if (!happening.event) {
      ShutForGood(happening.well, happening.reason);
      continue;
    }
    const EventSpec& event = case_.events.at(*happening.event);
    Apply(event, {}, told);
    const auto isDone = [&](const Pending& pending) { return pending.event == &event; };
    std::erase_if(dated_, isDone);
    std::erase_if(conditional_, isDone);
  }
}

EventReport FieldState::CauseOf(const Pending& pending, const Date& date,
                                const StepRecord* before) const {
  EventReport report{date, "date", "", "", "", pending.event->note};
  if (pending.event->date) return report;
  const Condition& condition = pending.condition;
  const double value = condition.measure->of(StandingOf(condition, *before));
  report.cause = "condition";
  report.reason = fmt::format("{}, now {:.6g}{}{}", pending.event->when,
                              FromField(value, condition.measure->quantity, case_.Units()),
                              pending.event->note.empty() ? "" : ": ", pending.event->note);
  return report;
}

std::vector<EventReport> FieldState::Begin(const Date& date, const StepRecord* before) {
  std::vector<EventReport> reports;
  const auto apply = [&](const Pending& pending, bool isDue) {
    if (isDue) Apply(*pending.event, CauseOf(pending, date, before), reports);
    return isDue;
  };
  if (before != nullptr) {
    Retire(date, *before, reports);
    std::erase_if(conditional_, [&](const Pending& pending) {
      return apply(pending, pending.condition.Holds(StandingOf(pending.condition, *before)));
    });
  }
  std::erase_if(dated_, [&](const Pending& pending) {
    return apply(pending, !(date < *pending.event->date));
  });
  return reports;
}

void FieldState::Apply(const EventSpec& event, const EventReport& cause,
                       std::vector<EventReport>& reports) {
  happenings_.push_back({static_cast<size_t>(&event - case_.events.data()), 0, {}});
  if (!event.group.empty()) ApplyToGroup(event, cause, reports);
  if (event.IsOfField()) ApplyToField(event, cause, reports);
  for (const std::string& name : case_.WellsOf(event)) {
    ApplyToWell(event, places_.at(name), cause, reports);
  }
}

void FieldState::ApplyToField(const EventSpec& event, const EventReport& cause,
                              std::vector<EventReport>& reports) {
  if (!event.wellChange.manifoldPressure) return;
  const KeyRow<WellSpec>& row = *std::ranges::find(ChangesOfWells(), "manifold_pressure",
                                                   [](const auto& r) { return r.about.name; });
  WellSpec before;
  before.manifoldPressure = manifoldPressure_;
  manifoldPressure_ = *event.wellChange.manifoldPressure;
  EventReport report = cause;
  report.target = "field";
  report.what = ChangeText(row.about.name, ShownValue(row, before, case_.Units()),
                           ShownValue(row, event.wellChange, case_.Units()));
  reports.push_back(report);
}

void FieldState::ApplyToGroup(const EventSpec& event, EventReport report,
                              std::vector<EventReport>& reports) {
  report.target = "group";
  report.name = event.group;
  GroupSpec& group = *std::ranges::find(groups_, event.group, &GroupSpec::name);
  for (const std::string& what :
       TakeOver(ChangesOfGroups(), event, event.groupChange, group, case_.Units())) {
    report.what = what;
    reports.push_back(report);
  }
}

void FieldState::ApplyToWell(const EventSpec& event, size_t place, EventReport report,
                             std::vector<EventReport>& reports) {
  StateOfWell& well = wells_[place];
  report.target = "well";
  report.name = well.spec.name;
  const bool shuts = event.Action() == EventAction::kShut;
  const bool drills = event.Action() == EventAction::kDrill;
  const bool isThere = well.shutBy != kNotDrilled || drills;
  if (event.Action() != EventAction::kNone && isThere && shuts == well.shutBy.empty()) {
    report.what = shuts ? "shut" : drills ? "drilled" : "opened";
    reports.push_back(report);
    well.shutBy = shuts ? kShut : "";
    well.isForGood = false;
  }
  if (event.IsOfField()) return;
  std::vector<KeyRow<WellSpec>> keys;
  std::ranges::copy_if(ChangesOfWells(), std::back_inserter(keys),
                       [&](const auto& row) { return IsForWells(event, row, well.spec); });
  for (const std::string& what :
       TakeOver<WellSpec>(keys, event, event.wellChange, well.spec, case_.Units())) {
    report.what = what;
    reports.push_back(report);
  }
  ForgetOtherTarget(event, well.spec);
}

}  // namespace gantry::fieldrun
