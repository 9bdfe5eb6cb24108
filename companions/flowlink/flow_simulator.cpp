#include "flowlink/flow_simulator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>

#include "flowlink/flow_items.h"
#include "flowlink/link_fault.h"
#include "flowlink/link_script.h"

namespace gantry::flowlink {

namespace {

using simulator::InflowTable;
using simulator::RequestRefused;
using simulator::RunPosition;
using simulator::Stop;
using simulator::WellConstraint;

constexpr double kSameTimeDays = 1e-5;
constexpr const char* kScriptName = "flowlink_link.py";
constexpr const char* kLogName = "flow.log";

/// Numbers that are the adapter's own and not flow's; their handles count on from flow's.
constexpr size_t kOwnItems = 1000;
enum OwnItem : size_t { kUptime, kTemperature, kOilDensity, kGasDensity, kWaterDensity };
constexpr std::array<std::string_view, 5> kOwnItemNames = {
    "UPTIME_FRACTION", "TEMPERATURE", "OIL_DENSITY", "GAS_DENSITY", "WATER_DENSITY"};

constexpr std::array<std::string_view, 2> kTexts = {"TYPE", "STATUS"};
constexpr std::array<std::string_view, 5> kStatuses = {
    "OPEN", "SURFACE_SHUTIN", "ALL_COMPLETIONS_SHUTIN", "SURFACE_ABANDONED",
    "ALL_COMPLETIONS_ABANDONED"};

/// What flow is run with: without these a fork of it hangs, for want of its threads, or can't be
/// told how long its one step is to be.
const std::vector<std::string> kNeededOptions = {
    "--threads-per-process=1", "--enable-async-ecl-output=false", "--enable-tuning=true"};

void WriteFile(const std::filesystem::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary);
  if (!(out << text << std::flush)) throw LinkFault("can't write " + file.string());
}

/// Whether a name of the deck means the well: itself, or a pattern with a star at its end.
bool Names(const std::string& pattern, const std::string& well) {
  if (!pattern.ends_with('*')) return pattern == well;
  return well.starts_with(pattern.substr(0, pattern.size() - 1));
}

std::array<int32_t, 6> DateAfter(DeckTime start, double days) {
  return DateOf(start + std::chrono::seconds(std::llround(days * 86400.0)));
}

void RequireNumber(double value, std::string_view what, const std::string& well) {
  if (std::isfinite(value)) return;
  throw RequestRefused(std::string(what) + " of well " + well + " is not a number");
}

}  // namespace

FlowSimulator::FlowSimulator(LinkSettings settings, const std::string& caseName,
                             const std::filesystem::path& folder)
    : settings_(std::move(settings)), deck_(ComposeDeck(settings_, kScriptName, SummaryVectors())) {
  StartFlow(caseName, folder);
  controls_.resize(WellNames().size());
  answers_.emplace("", link_->Stop().values);
  Describe();
}

void FlowSimulator::StartFlow(const std::string& caseName, const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  WriteFile(folder / kScriptName, kLinkScript);
  WriteFile(folder / (caseName + ".DATA"), deck_.text);
  std::vector<std::string> arguments = {settings_.program};
  arguments.insert(arguments.end(), kNeededOptions.begin(), kNeededOptions.end());
  arguments.insert(arguments.end(), settings_.options.begin(), settings_.options.end());
  arguments.push_back(caseName + ".DATA");
  process_ = std::make_unique<FlowProcess>(arguments, folder, kLogName);
  link_ = std::make_unique<FlowLink>(*process_, SummaryVectors(), deck_.units,
                                     settings_.secondsForQuestion);
}

void FlowSimulator::Describe() {
  description_.version = "2022.10 (OPM Flow)";
  description_.unitSystem = deck_.units == "FIELD" ? "ECLIPSE_FIELD" : "ECLIPSE_METRIC";
  description_.startDate = link_->StartDate();
  description_.fieldFluidModel = "BLACKOIL";
  description_.reservoirFluidModel = "BLACKOIL";
  const bool isField = deck_.units == "FIELD";
  if (!settings_.hasTemperature) settings_.temperature = isField ? 60.0 : 15.6;
}

RunPosition FlowSimulator::Position() const {
  RunPosition position;
  const FlowStop& stop = link_->Stop();
  if (isRunning_) {
    position.stop = stop.isLast ? Stop::kEndSimulate : Stop::kBeginNewton;
    position.days = stop.days;
  }
  position.date = DateAfter(deck_.start, position.days);
  return position;
}

std::optional<size_t> FlowSimulator::FindWellNumber(std::string_view item) const {
  const auto own = std::ranges::find(kOwnItemNames, item);
  if (own == kOwnItemNames.end()) return FindFlowItem(item);
  return kOwnItems + static_cast<size_t>(own - kOwnItemNames.begin());
}

std::optional<size_t> FlowSimulator::FindWellText(std::string_view item) const {
  const auto text = std::ranges::find(kTexts, item);
  if (text == kTexts.end()) return std::nullopt;
  return static_cast<size_t>(text - kTexts.begin());
}

double FlowSimulator::WellNumber(size_t well, size_t item) {
  if (item >= kOwnItems) return OwnNumber(well, item - kOwnItems);
  return FlowItemValue(item, Values()[well]);
}

double FlowSimulator::OwnNumber(size_t well, size_t item) const {
  const double numbers[] = {controls_[well].uptime.value_or(1.0), settings_.temperature,
                            deck_.oilDensity, deck_.gasDensity, deck_.waterDensity};
  return numbers[item];
}

std::string FlowSimulator::WellText(size_t well, size_t item) {
  if (kTexts[item] == "STATUS") return std::string(StatusOf(well));
  static constexpr const char* kKinds[] = {"PRODUCER", "WATER_INJECTOR", "GAS_INJECTOR"};
  return kKinds[static_cast<size_t>(KindOf(well))];
}

std::string_view FlowSimulator::StatusOf(size_t well) const {
  if (!controls_[well].status.empty()) return controls_[well].status;
  const DeckWell& deck = link_->Stop().wells[well];
  if (!deck.isDrilled || deck.status == "SHUT") return "ALL_COMPLETIONS_SHUTIN";
  return deck.status == "STOP" ? "SURFACE_SHUTIN" : "OPEN";
}

WellKind FlowSimulator::KindOf(size_t well) const {
  const std::string& name = WellNames()[well];
  const DeckWell& deck = link_->Stop().wells[well];
  const auto means = [&](const auto& injected) { return Names(injected.first, name); };
  const auto found = std::ranges::find_if(deck_.injected, means);
  const bool isInjector = deck.isDrilled ? !deck.isProducer : found != deck_.injected.end();
  if (!isInjector) return WellKind::kProducer;
  const bool isGas = found != deck_.injected.end() && found->second == "GAS";
  return isGas ? WellKind::kGasInjector : WellKind::kWaterInjector;
}

const FlowSimulator::WellValues& FlowSimulator::Values() {
  if (!isAskedKnown_) {
    asked_ = Keywords(false);
    isAskedKnown_ = true;
  }
  const auto known = answers_.find(asked_);
  if (known != answers_.end()) return known->second;
  // Nothing can be asked where no step follows any more.
  if (link_->Stop().isLast) return link_->Stop().values;
  return answers_.emplace(asked_, link_->Ask(asked_)).first->second;
}

std::string FlowSimulator::Keywords(bool withUptime) const {
  std::string keywords;
  for (size_t well = 0; well < controls_.size(); ++well) {
    const HostControls& host = controls_[well];
    if (!host.IsTakenOver() || !link_->Stop().wells[well].isDrilled) continue;
    const std::string& name = WellNames()[well];
    if (!host.constraints.empty() || !host.status.empty()) {
      keywords += ControlKeyword(name, KindOf(well), host, DeckLimits(well));
    }
    if (withUptime && host.uptime) keywords += UptimeKeyword(name, *host.uptime);
  }
  return keywords;
}

/// All of them as long as the host has set none; later those that are kept beside the host's.
std::vector<WellConstraint> FlowSimulator::DeckLimits(size_t well) const {
  static const Strings kAll = {"bottom_hole_pressure", "oil_rate",      "water_rate", "gas_rate",
                               "liquid_rate",          "reservoir_rate"};
  const bool isHeldByHost = !controls_[well].constraints.empty();
  return KeptLimits(link_->Stop().wells[well], KindOf(well),
                    isHeldByHost ? settings_.keptLimits : kAll);
}

InflowTable FlowSimulator::MeasureInflow(size_t, std::string_view, int32_t, double) {
  throw RequestRefused("flow measures no inflow by itself: set limits and query the wells");
}

std::vector<WellConstraint> FlowSimulator::Constraints(size_t well) const {
  std::vector<WellConstraint> constraints = DeckLimits(well);
  const auto& host = controls_[well].constraints;
  constraints.insert(constraints.end(), host.begin(), host.end());
  return constraints;
}

HostControls& FlowSimulator::Take(size_t well) {
  const std::string& name = WellNames()[well];
  const auto isNamed = [&](const std::string& pattern) { return Names(pattern, name); };
  if (!settings_.wells.empty() && std::ranges::none_of(settings_.wells, isNamed)) {
    throw RequestRefused("Well " + name + " is left to the deck: 'wells' doesn't name it");
  }
  isAskedKnown_ = false;
  return controls_[well];
}

void FlowSimulator::SetConstraints(size_t well, std::span<const WellConstraint> constraints) {
  for (const WellConstraint& constraint : constraints) {
    CheckConstraint(constraint.item, KindOf(well), WellNames()[well]);
    RequireNumber(constraint.value, constraint.item, WellNames()[well]);
  }
  Take(well).constraints.assign(constraints.begin(), constraints.end());
}

void FlowSimulator::SetStatus(size_t well, std::string_view status, std::string_view) {
  if (std::ranges::find(kStatuses, status) == kStatuses.end()) {
    throw RequestRefused("Unknown well status " + std::string(status));
  }
  Take(well).status = status;
}

void FlowSimulator::SetUptime(size_t well, double fraction) {
  RequireNumber(fraction, "UPTIME_FRACTION", WellNames()[well]);
  Take(well).uptime = std::clamp(fraction, 0.0, 1.0);
}

bool FlowSimulator::CreateFluidSource(size_t, const std::string&, const std::string&) {
  return false;
}

void FlowSimulator::SetFluidSource(const std::string& source, std::span<const std::string>,
                                   std::span<const double>, const std::string&) {
  throw RequestRefused("A black oil has no composition for the source " + source);
}

void FlowSimulator::ContinueUntil(double days) {
  isRunning_ = true;
  while (!link_->Stop().isLast && link_->Stop().days < days - kSameTimeDays) {
    link_->Advance(Keywords(true));
    answers_.clear();
    // What the run has just done under the limits in force is the answer to them.
    asked_ = Keywords(false);
    isAskedKnown_ = true;
    answers_.emplace(asked_, link_->Stop().values);
  }
}

}  // namespace gantry::flowlink
