#include "fieldrun/run/well_totals.h"

#include <algorithm>
#include <cmath>
#include <map>

#include <fmt/format.h>

#include "fieldrun/driver/module_text.h"
#include "fieldrun/driver/variable_choice.h"

namespace gantry::fieldrun {
namespace {

constexpr int kNone = -1;
constexpr std::array<double Rates::*, 3> kPhase{&Rates::oil, &Rates::water, &Rates::gas};
/// The module publishes liquids in millions of barrels, and gas in millions of standard cubic feet.
constexpr std::array<double, 3> kUnit{1e6, 1e6, 1};

/// The catalogue's keys of what wells of a kind are counted by, in the order of kPhase.
const std::array<const char*, 3>& KeysOf(WellKind kind) {
  static constexpr std::array<std::array<const char*, 3>, 3> kKeys{{
      {"OIL_PRODUCTION_CUML", "WATER_PRODUCTION_CUML", "GAS_PRODUCTION_CUML"},
      {nullptr, "WATER_INJECTION_CUML", nullptr},
      {nullptr, nullptr, "GAS_INJECTION_CUML"},
  }};
  return kKeys[static_cast<size_t>(kind)];
}

bool IsSound(const Rates& volumes) {
  return std::ranges::all_of(kPhase, [&](auto phase) { return std::isfinite(volumes.*phase); });
}

/// Whether a count has gone on from where it stood. Its six digits may hide a step, but not all
/// that has ever flowed; `rates` are those of the step before, since a well makes nothing yet in
/// the step at whose end its first water comes.
bool HasFollowed(const Rates& count, const Rates& before, const Rates& rates) {
  constexpr double kFlows = 1e-3;
  constexpr double kRounding = 1e-3;  // a barrel's, or of a million cubic feet
  return std::ranges::all_of(kPhase, [&](auto phase) {
    const double least = before.*phase - 1e-5 * std::abs(before.*phase) - kRounding;
    return count.*phase >= least && (count.*phase > 0 || rates.*phase < kFlows);
  });
}

}  // namespace

void PublishTotals(DriverModel& model, const CaseModel& caseModel) {
  std::vector<VariableChoice> choices;
  for (const WellSpec& well : caseModel.wells) {
    if (!well.connected) continue;
    for (const char* key : KeysOf(well.Kind())) {
      if (key != nullptr) choices.push_back({NameForModule(well.name), key});
    }
  }
  Publish(model, choices, caseModel.simulator.storeFile);
}

WellTotals::WellTotals(const std::vector<RunWell>& wells,
                       const std::vector<PublishedVariable>& published, ReadVariable read,
                       Warn warn)
    : read_(std::move(read)), warn_(std::move(warn)) {
  std::map<std::pair<std::string, uint32_t>, int> handles;
  for (const PublishedVariable& variable : published) {
    handles.emplace(std::pair(variable.wellName, variable.code), variable.handle);
  }
  for (const RunWell& well : wells) {
    Well& added = wells_.emplace_back();
    added.spec = well.spec;
    added.handles.fill(kNone);
    const auto& keys = KeysOf(well.spec->Kind());
    for (size_t i = 0; i < keys.size(); ++i) {
      if (keys[i] == nullptr) continue;
      const auto found = handles.find({well.spec->name, CodeOfVariable(keys[i])});
      if (found == handles.end()) {
        added.doubt = "the module publishes no cumulative volumes";
      } else {
        added.handles[i] = found->second;
      }
    }
  }
}

Rates WellTotals::Read(const Well& well) const {
  Rates volumes;
  for (size_t i = 0; i < kPhases; ++i) {
    if (well.handles[i] != kNone) volumes.*kPhase[i] = kUnit[i] * read_(well.handles[i]);
  }
  return volumes;
}

void WellTotals::WarnOf(const std::string& well, const Date& date,
                        const std::string& reason) const {
  warn_({"totals", well, date,
         "totals are the rate at the end of each step times its length from here on, since " +
             reason});
}

void WellTotals::Begin(const Date& firstDay) {
  std::vector<const Well*> doubtful;
  for (Well& well : wells_) {
    try {
      if (well.doubt.empty()) well.before = well.count = Read(well);
      if (!IsSound(well.before)) well.doubt = "the simulator's own are no numbers";
    } catch (const DriverFailure& failure) {
      well.doubt = failure.what();
    }
    if (!well.doubt.empty()) doubtful.push_back(&well);
  }
  // One word for all where the simulator counts for none.
  if (doubtful.size() == wells_.size() && doubtful.size() > 1) {
    return WarnOf("", firstDay, doubtful.front()->doubt);
  }
  for (const Well* well : doubtful) WarnOf(well->spec->name, firstDay, well->doubt);
}

// What the module doesn't publish any more can't be read.
void WellTotals::GoOn(const std::vector<WellCount>& counts) {
  for (size_t i = 0; i < wells_.size(); ++i) {
    const std::string doubt = wells_[i].doubt;
    static_cast<WellCount&>(wells_[i]) = counts.at(i);
    if (!doubt.empty()) wells_[i].doubt = doubt;
  }
}

std::vector<WellCount> WellTotals::Counts() const { return {wells_.begin(), wells_.end()}; }

// False when the simulator's count is of no use; `doubt` says why.
bool WellTotals::Measure(Well& well, const WellStep& step) {
  try {
    const Rates count = Read(well);
    const Rates rates = well.rates;
    well.rates = step.reported ? step.reported->rates : Rates{};
    if (!IsSound(count) || !HasFollowed(count, well.count, rates)) {
      well.doubt = "the simulator's own don't follow what the well makes";
      return false;
    }
    well.count = count;
    well.total = count;
    well.total += -1.0 * well.before;
    return true;
  } catch (const DriverFailure& failure) {
    well.doubt = failure.what();
    return false;
  }
}

// A simulator that stops at times of its own alone runs on past the end of a step, or stands still
// in one, which nothing else tells.
void WellTotals::CheckLength(const StepRecord& record) {
  constexpr double kOff = 1.5;  // rates don't keep still within a step
  double made = 0;
  double least = 0;
  double most = 0;
  for (size_t i = 0; i < wells_.size(); ++i) {
    const WellStep& step = record.wells[i];
    if (!step.point.isOpen || !step.isTotalMeasured || !step.reported) continue;
    const double planned = step.point.rates.Size();
    const double reported = step.reported->rates.Size();
    made += step.total.Size() - wells_[i].checked;
    wells_[i].checked = step.total.Size();
    least += step.uptime * record.length * std::min(planned, reported);
    most += step.uptime * record.length * std::max(planned, reported);
  }
  if (made <= kOff * most && kOff * made >= least) return;
  warn_({"time", "", record.date,
         fmt::format("by its totals the simulator has run for {:.2g} times the length of a step: "
                     "does it stop at the days on which steps end?",
                     made / most)});
}

void WellTotals::Count(StepRecord& record) {
  CountWells(record);
  CheckLength(record);
}

void WellTotals::CountWells(StepRecord& record) {
  for (size_t i = 0; i < wells_.size(); ++i) {
    Well& well = wells_[i];
    WellStep& step = record.wells[i];
    step.isTotalMeasured = well.doubt.empty();
    step.total = well.total;
    if (!step.point.isOpen) continue;  // its count stands still, and asking takes time
    if (step.isTotalMeasured && Measure(well, step)) {
      step.total = well.total;
      continue;
    }
    if (!step.reported) {
      if (step.isTotalMeasured) well.doubt.clear();  // it is asked again at the next step
      step.total = kUnknownRates;
      continue;
    }
    if (step.isTotalMeasured) WarnOf(well.spec->name, record.date, well.doubt);
    step.isTotalMeasured = false;
    well.total += step.uptime * record.length * step.reported->rates;
    step.total = well.total;
  }
}

}  // namespace gantry::fieldrun
