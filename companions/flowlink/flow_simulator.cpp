#include "flowlink/flow_simulator.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "described_toml/calendar.h"
#include "flowlink/flow_items.h"
#include "flowlink/link_fault.h"
#include "flowlink/override_text.h"
#include "simulator_side/well_words.h"
#include "text/checksum.h"

namespace gantry::flowlink {

namespace {

using simulator::InflowTable;
using simulator::RequestRefused;
using simulator::RequireNumber;
using simulator::RunPosition;
using simulator::WellConstraint;
using toml_reader::DateAfter;

constexpr const char* kStateFormat = "flowlink state 1";
constexpr double kSameTimeDays = 2e-5;  // flow counts whole seconds

/// Numbers that are the adapter's own and not flow's; their handles count on from flow's.
constexpr size_t kOwnItems = 1000;
constexpr std::array<std::string_view, 5> kOwnItemNames = {
    words::kUptimeFraction, words::kTemperature, words::kOilDensity, words::kGasDensity,
    words::kWaterDensity};

}  // namespace

FlowSimulator::FlowSimulator(LinkSettings settings, const std::string& caseName, WorkFolder folder,
                             const std::string& firstRun)
    : settings_(std::move(settings)),
      caseName_(caseName),
      folder_(std::move(folder)),
      notes_(folder_.Path() / (caseName + ".warnings")),
      answers_(notes_, settings_.solvesAllRungs) {
  run_ = std::make_unique<FlowRun>(settings_, folder_.Path(), firstRun, RunBegin());
  wellNames_ = run_->Link().Wells();
  deckWells_ = DeckWells(wellNames_, run_->Link().DeckChanges(), run_->Deck().wellOrders);
  controls_.resize(wellNames_.size());
  shutByFlow_.resize(wellNames_.size());
  isTold_.resize(wellNames_.size());
  if (settings_.keepsWayBack) {
    states_.emplace(folder_.Path() / (caseName_ + ".state"), kStateFormat,
                    Checksum(run_->Deck().text.Text()));
  }
  TakeStop("");
  Describe();
}

FlowSimulator::FlowSimulator(LinkSettings settings, const std::string& caseName,
                             const std::filesystem::path& folder)
    : FlowSimulator(std::move(settings), caseName, WorkFolder(folder), caseName) {
  for (const DeckFinding& warning : run_->Deck().warnings) notes_.Add(warning.Text());
}

void FlowSimulator::Describe() {
  description_.version = "2022.10 (OPM Flow)";
  const bool isField = run_->Deck().units == "FIELD";
  description_.unitSystem = isField ? "ECLIPSE_FIELD" : "ECLIPSE_METRIC";
  description_.startDate = run_->Link().StartDate();
  description_.fieldFluidModel = "BLACKOIL";
  description_.reservoirFluidModel = "BLACKOIL";
  if (!settings_.hasTemperature) settings_.temperature = isField ? 60.0 : 15.6;
}

RunPosition FlowSimulator::Position() const {
  RunPosition position;
  if (isRunning_) {
    position.stop = Stop().isLast ? simulator::Stop::kEndSimulate : simulator::Stop::kBeginNewton;
  }
  if (isRunning_ || isResumed_) position.days = Stop().days;
  position.date = DateAfter(run_->Deck().start, position.days);
  return position;
}

std::optional<size_t> FlowSimulator::FindWellNumber(std::string_view item) const {
  const auto own = std::ranges::find(kOwnItemNames, item);
  if (own == kOwnItemNames.end()) return FindFlowItem(item);
  return kOwnItems + static_cast<size_t>(own - kOwnItemNames.begin());
}

double FlowSimulator::WellNumber(size_t well, size_t item) {
  if (item >= kOwnItems) return OwnNumber(well, item - kOwnItems);
  return FlowItemValue(item, Values()[well]);
}

double FlowSimulator::OwnNumber(size_t well, size_t item) const {
  const ComposedDeck& deck = run_->Deck();
  const double numbers[] = {controls_[well].uptime.value_or(1.0), settings_.temperature,
                            deck.oilDensity, deck.gasDensity, deck.waterDensity};
  return numbers[item];
}

std::string_view FlowSimulator::StatusOf(size_t well) const {
  if (IsLeftShut(well)) return words::kCompletionsShut;
  if (!controls_[well].status.empty()) return controls_[well].status;
  const DeckWell& deck = deckWells_[well];
  if (!deck.isDrilled || deck.status == "SHUT") return words::kCompletionsShut;
  return deck.status == "STOP" ? words::kSurfaceShut : words::kOpen;
}

/// What the deck or flow has shut the host can't open, unless the settings let it.
bool FlowSimulator::IsLeftShut(size_t well) const {
  if (shutByFlow_[well]) return true;
  const DeckWell& deck = deckWells_[well];
  const bool isShut = deck.status == "SHUT" || deck.status == "STOP" || deck.isHeldAtNothing;
  return isShut && !settings_.opensShutWells;
}

const WellValues& FlowSimulator::Values() {
  if (inForce_ != nullptr) return *inForce_;
  // Nothing can be asked where no step follows any more.
  if (Stop().isLast) return Stop().values;
  inForce_ = &answers_.Of(run_->Link(), controls_,
                          [this](const auto& controls) { return QuestionOf(controls); });
  return *inForce_;
}

template <class Write>
std::string FlowSimulator::ControlKeywords(const std::vector<HostControls>& controls,
                                           Write write) const {
  std::string keywords;
  for (size_t well = 0; well < controls.size(); ++well) {
    const HostControls& host = controls[well];
    if (!deckWells_[well].isDrilled || IsLeftShut(well)) continue;
    if (host.constraints.empty() && host.status.empty()) continue;
    HostControls inFluids = host;
    inFluids.constraints = InFluids(host.constraints, run_->Deck().fluids);
    keywords += write(wellNames_[well], KindOf(well), inFluids, DeckLimits(well, host));
  }
  return keywords;
}

std::string FlowSimulator::KeywordsOf(const std::vector<HostControls>& controls) const {
  return ControlKeywords(controls, [](const auto&... well) { return ControlKeyword(well...); });
}

Question FlowSimulator::QuestionOf(const std::vector<HostControls>& controls) const {
  Question question;
  question.key = KeywordsOf(controls);
  question.keywords = NamesKeyword() + ControlKeywords(controls, [&](const auto&... well) {
                        return ControlKeyword(well..., &question.numbers);
                      });
  return question;
}

/// A well that is never up is shut while the run goes on: flow knows no uptime of zero.
std::vector<HostControls> FlowSimulator::ControlsOfRun() const {
  std::vector<HostControls> controls = controls_;
  for (HostControls& host : controls) {
    if (host.uptime && *host.uptime <= 0.0) host.status = words::kSurfaceShut;
  }
  return controls;
}

void FlowSimulator::NoteWhoWantsMost() {
  const WellValues* most = answers_.Most();
  if (most == nullptr) return;
  for (size_t well = 0; well < controls_.size(); ++well) {
    controls_[well].wantsMost = AreMost(controls_[well].constraints, (*most)[well]);
  }
}

std::string FlowSimulator::UptimeKeywords() const {
  std::string keywords;
  for (size_t well = 0; well < controls_.size(); ++well) {
    const auto& uptime = controls_[well].uptime;
    if (!uptime || *uptime <= 0.0 || !deckWells_[well].isDrilled) continue;
    keywords += UptimeKeyword(wellNames_[well], *uptime);
  }
  return keywords;
}

/// All of them as long as the host has set none; later those that are kept beside the host's.
HeldByDeck FlowSimulator::DeckLimits(size_t well, const HostControls& host) const {
  if (host.constraints.empty()) return AllLimits(deckWells_[well]);
  return KeptLimits(deckWells_[well], settings_.keptLimits);
}

InflowTable FlowSimulator::MeasureInflow(size_t, std::string_view, int32_t, double) {
  throw RequestRefused("flow measures no inflow by itself: set limits and query the wells");
}

std::vector<WellConstraint> FlowSimulator::Constraints(size_t well) const {
  std::vector<WellConstraint> constraints = DeckLimits(well, controls_[well]).limits;
  const auto& host = controls_[well].constraints;
  constraints.insert(constraints.end(), host.begin(), host.end());
  return constraints;
}

HostControls& FlowSimulator::Take(size_t well) {
  const std::string& name = WellNames()[well];
  const auto isNamed = [&](const std::string& pattern) { return MeansWell(pattern, name); };
  if (!settings_.wells.empty() && std::ranges::none_of(settings_.wells, isNamed)) {
    throw RequestRefused("Well " + name + " is left to the deck: 'wells' doesn't name it");
  }
  if (const WellOrder* change = deckWells_.ChangeOfKind(well)) {
    throw RequestRefused("Well " + name + " becomes another kind of well at " +
                         change->place.Text() + ": leave it to the deck (connected = false)");
  }
  if (const WellOrder* order = deckWells_.HeldByQuantity(well)) {
    throw RequestRefused("Well " + name + " is held by " + order->quantity + " at " +
                         order->place.Text() +
                         ", which the deck computes: leave it to the deck (connected = false)");
  }
  inForce_ = nullptr;
  return controls_[well];
}

void FlowSimulator::SetConstraints(size_t well, std::span<const WellConstraint> constraints) {
  for (const WellConstraint& constraint : constraints) {
    CheckConstraint(constraint.item, KindOf(well), WellNames()[well]);
    RequireNumber(constraint.value, constraint.item, WellNames()[well]);
  }
  HostControls& host = Take(well);
  host.constraints.assign(constraints.begin(), constraints.end());
  host.wantsMost = false;
}

void FlowSimulator::SetStatus(size_t well, std::string_view status, std::string_view) {
  if (!std::ranges::count(simulator::kStatusWords, status)) {
    throw RequestRefused("Unknown well status " + std::string(status));
  }
  Take(well).status = status;
}

void FlowSimulator::SetUptime(size_t well, double fraction) {
  RequireNumber(fraction, words::kUptimeFraction, WellNames()[well]);
  // A host without downtimes leaves the deck's efficiency factors alone.
  if (fraction == 1.0 && !controls_[well].uptime) return;
  Take(well).uptime = std::clamp(fraction, 0.0, 1.0);
}

bool FlowSimulator::CreateFluidSource(size_t, const std::string&, const std::string&) {
  return false;
}

void FlowSimulator::SetFluidSource(const std::string& source, std::span<const std::string>,
                                   std::span<const double>, const std::string&) {
  throw RequestRefused("A black oil has no composition for the source " + source);
}

double FlowSimulator::TargetOf(double days) const {
  std::vector<double> stops;
  if (days <= Stop().days + kSameTimeDays) {
    for (const PastStop& stop : stops_) stops.push_back(stop.days);
  } else {
    const auto& ends = run_->Deck().ends;
    stops.assign(std::ranges::upper_bound(ends, Stop().days + kSameTimeDays), ends.end());
  }
  return stops.empty() ? Stop().days : stops[StopFor(settings_.grid, stops, days)];
}

void FlowSimulator::ContinueUntil(double days) {
  isRunning_ = true;
  const double target = TargetOf(days);
  if (target < Stop().days - kSameTimeDays) GoBackTo(target);
  TellOverrides();
  RunOn(target);
  KeepState(days);
}

/// To the stop at `target` under what the host has decided; nowhere where the run stands there.
void FlowSimulator::RunOn(double target) {
  NoteWhoWantsMost();
  while (!Stop().isLast && Stop().days < target - kSameTimeDays) {
    const double before = Stop().days;
    const std::vector<HostControls> controls = ControlsOfRun();
    RunUnder(QuestionOf(BeyondMost(controls)));
    // For the host these are still its limits.
    TakeStop(KeywordsOf(controls));
    if (Stop().days < target - kSameTimeDays) ReleaseChanged(before);
  }
}

void FlowSimulator::RunUnder(const Question& limits) {
  // Where a run begins, flow knows no names for wells' limits yet.
  if (run_->IsOnlyAsked()) return BeginRun({run_->WayToStop(), limits.key + UptimeKeywords()});
  const std::string orders = limits.keywords + UptimeKeywords();
  // What was ordered once holds until the deck orders something.
  const bool isInForce = orders == ordered_ && !run_->HasOrdersAtStop();
  run_->Advance(isInForce ? "" : orders, limits.numbers);
  ordered_ = orders;
}

/// What the host has decided for a step was for the well as it was then: from where the deck says
/// something else within the step, the deck's word holds.
void FlowSimulator::ReleaseChanged(double since) {
  for (size_t well = 0; well < controls_.size(); ++well) {
    HostControls& host = controls_[well];
    if (host.constraints.empty() && host.status.empty()) continue;
    const WellOrder* order = deckWells_.LastOrder(well, since, Stop().days);
    if (order == nullptr) continue;
    host.constraints.clear();
    // Part of an order changes what the host has had written: it needs the rest anew.
    host.status = order->isWhole ? "" : words::kOpen;
  }
}

void FlowSimulator::NoteShutWells() {
  for (size_t well = 0; well < controls_.size(); ++well) {
    const DeckWell& deck = deckWells_[well];
    std::optional<double>& since = shutByFlow_[well];
    if (since && (Stop().days < *since || deckWells_.LastOrder(well, *since, Stop().days))) {
      since.reset();
    }
    const bool isWanted = deck.isDrilled && !IsLeftShut(well) &&
                          IsHeldOpen(deck.kind, controls_[well]) &&
                          controls_[well].uptime.value_or(1.0) > 0.0;
    if (!isWanted || !deck.hasEconomicLimit || !IsShutInFlow(Stop().values[well])) continue;
    since = Stop().days;
    notes_.Add("flow has shut well " + wellNames_[well] + " by its economic limit (WECON), day " +
               std::to_string(std::lround(Stop().days)));
  }
}

void FlowSimulator::TellOverrides() {
  std::vector<size_t> wells;
  for (size_t well = 0; well < controls_.size(); ++well) {
    if (isTold_[well] || !controls_[well].IsTakenOver()) continue;
    isTold_[well] = true;
    wells.push_back(well);
  }
  TellOverridesOf(wells);
}

/// One line for each keyword of the deck, with all wells for which it gives way.
void FlowSimulator::TellOverridesOf(const std::vector<size_t>& wells) {
  std::map<std::pair<double, std::string>, std::pair<const WellOrder*, std::string>> given;
  for (const size_t well : wells) {
    for (const WellOrder* order : deckWells_.OrdersFrom(well, 0.0)) {
      if (order->keyword == "WELOPEN" && !settings_.opensShutWells) continue;
      auto& [first, names] = given[{order->days, order->place.Text()}];
      first = order;
      names += (names.empty() ? "" : ", ") + wellNames_[well];
    }
  }
  for (const auto& [place, order] : given) {
    notes_.Add(OverrideText(*order.first, run_->Deck().start, order.second, settings_.keptLimits));
  }
}

void FlowSimulator::BeginRun(const RunBegin& begin) {
  run_->Finish();
  run_.reset();
  const std::string name = runs_ == 1 ? caseName_ : caseName_ + "_" + std::to_string(runs_);
  run_ = std::make_unique<FlowRun>(settings_, folder_.Path(), name, begin);
  ordered_.clear();
}

/// To a stop that the run has come through. The limits in force stay.
void FlowSimulator::GoBackTo(double days) {
  const auto isReached = [&](const PastStop& stop) { return stop.days >= days - kSameTimeDays; };
  const auto stop = std::ranges::find_if(stops_, isReached);
  if (!settings_.keepsWayBack) {
    throw RequestRefused("There is no way back in time: 'way_back' is false");
  }
  const std::optional<RestartPoint> way = stop->way;
  stops_.erase(stop, stops_.end());
  ++runs_;
  BeginRun({way, {}});
  TakeStop("");
}

void FlowSimulator::TakeStop(const std::string& key) {
  stops_.push_back({Stop().days, run_->WayToStop()});
  deckWells_.GoTo(Stop().days);
  NoteShutWells();
  answers_.Begin(Stop(), key);
  inForce_ = nullptr;
}

}  // namespace gantry::flowlink
