#include "flowlink/well_controls.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

#include "client/words.h"
#include "flowlink/flow_items.h"

namespace gantry::flowlink {

namespace {

using simulator::RequestRefused;
using simulator::WellConstraint;

/// A limit by all its names: the protocol's, flow's for the control mode, the key of the settings,
/// flow's own for the deck's value.
struct Limit {
  std::string_view item;
  std::string_view mode;
  std::string_view keptAs;
  const char* flowName;
};

/// In the order of the keyword's columns.
constexpr Limit kProducerLimits[] = {
    {words::kOilProductionRate, "ORAT", "oil_rate", "oil_rate"},
    {words::kWaterProductionRate, "WRAT", "water_rate", "water_rate"},
    {words::kGasProductionRate, "GRAT", "gas_rate", "gas_rate"},
    {words::kLiquidProductionRate, "LRAT", "liquid_rate", "liquid_rate"},
    {words::kReservoirProductionRate, "RESV", "reservoir_rate", "resv_rate"},
    {words::kBottomHolePressure, "BHP", "bottom_hole_pressure", "bhp_target"},
    {words::kTubingHeadPressure, "THP", "tubing_head_pressure", "thp_target"},
};
constexpr std::array<Limit, 4> InjectorLimits(std::string_view rate, std::string_view keptAs) {
  return {{{rate, "RATE", keptAs, "surf_inj_rate"},
           {words::kReservoirInjectionRate, "RESV", "reservoir_rate", "resv_inj_rate"},
           {words::kBottomHolePressure, "BHP", "bottom_hole_pressure", "bhp_target"},
           {words::kTubingHeadPressure, "THP", "tubing_head_pressure", "thp_target"}}};
}
constexpr auto kWaterInjectorLimits = InjectorLimits(words::kWaterInjectionRate, "water_rate");
constexpr auto kGasInjectorLimits = InjectorLimits(words::kGasInjectionRate, "gas_rate");

std::span<const Limit> LimitsOf(WellType kind) {
  if (kind == WellType::kProducer) return kProducerLimits;
  if (kind == WellType::kWaterInjector) return kWaterInjectorLimits;
  return kGasInjectorLimits;
}

bool IsTubing(const Limit& limit) { return limit.mode == "THP"; }
bool IsPressure(const Limit& limit) { return limit.mode == "BHP" || IsTubing(limit); }

/// flow takes a quantity that begins with WU for one that a user has defined for wells.
constexpr std::string_view kNamePrefix = "WUFL";
std::string NameOf(const Limit& limit) { return std::string(kNamePrefix).append(limit.mode); }

std::string Format(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.12g", value);
  return text;
}

/// A producer's pressure bounds from below, everything else from above.
double Tighter(const Limit& limit, WellType kind, double one, double other) {
  const bool isFloor = IsPressure(limit) && kind == WellType::kProducer;
  return isFloor ? std::max(one, other) : std::min(one, other);
}

/// The limits of a well in the columns of its keyword.
class Columns {
 public:
  Columns(WellType kind, const HostControls& host, const HeldByDeck& kept)
      : kind_(kind), limits_(LimitsOf(kind)), values_(limits_.size()) {
    for (const WellConstraint& constraint : host.constraints) Take(constraint, true);
    for (const WellConstraint& constraint : kept.limits) Take(constraint, false);
    if (host.constraints.empty() && !kept.mode.empty()) mode_ = kept.mode;
    if (values_.back()) lift_ = " " + kept.liftTable;
    if (values_.back() && !kept.liftAmount.empty()) lift_ += " " + kept.liftAmount;
  }

  /// True when the host wants no flow at all. A zero beside another limit says only that the well
  /// had nothing of that fluid to be measured.
  bool AreAllZero() const { return hostRates_ > 0 && hostRates_ == zeroRates_; }
  const std::string& Mode() const { return mode_; }

  std::string Text(const std::string& well, NamedLimits* named) const {
    std::string text;
    for (size_t i = 0; i < limits_.size(); ++i) {
      if (!values_[i]) {
        if (!IsTubing(limits_[i])) text += " 1*";
        continue;
      }
      const std::string name = NameOf(limits_[i]);
      if (named != nullptr) named->push_back({well, name, *values_[i]});
      text += " " + (named != nullptr ? name : Format(*values_[i]));
    }
    return text + lift_;
  }

 private:
  void Take(const WellConstraint& constraint, bool isHost) {
    const auto found = std::ranges::find(limits_, constraint.item, &Limit::item);
    if (found == limits_.end()) return;
    if (!IsPressure(*found)) {
      if (isHost) ++hostRates_;
      if (isHost && constraint.value <= 0.0) ++zeroRates_;
      if (isHost && constraint.value <= 0.0) return;
    }
    std::optional<double>& value = values_[static_cast<size_t>(found - limits_.begin())];
    value = value ? Tighter(*found, kind_, *value, constraint.value) : constraint.value;
    const bool isBetterMode = (mode_ == "BHP" || mode_ == "THP") && !IsPressure(*found);
    if (mode_.empty() || isBetterMode) mode_ = found->mode;
  }

  WellType kind_;
  std::span<const Limit> limits_;
  std::vector<std::optional<double>> values_;
  std::string mode_;
  std::string lift_;  ///< what stands behind the limits
  int hostRates_ = 0;
  int zeroRates_ = 0;
};

/// The limits of the deck that `isKept` takes; a tubing-head limit needs its lift table.
template <class IsKept>
std::vector<WellConstraint> LimitsIn(const DeckWell& deck, IsKept isKept) {
  std::vector<WellConstraint> limits;
  for (const Limit& limit : LimitsOf(deck.kind)) {
    const auto found = deck.limits.find(limit.flowName);
    if (found == deck.limits.end() || !isKept(limit)) continue;
    if (IsTubing(limit) && deck.liftTable.empty()) continue;
    limits.push_back({std::string(limit.item), found->second, "DECK"});
  }
  return limits;
}

}  // namespace

std::vector<WellConstraint> InFluids(std::span<const WellConstraint> constraints,
                                     const DeckFluids& fluids) {
  std::vector<WellConstraint> inFluids;
  for (WellConstraint constraint : constraints) {
    const bool isLiquid = constraint.item == words::kLiquidProductionRate;
    if (isLiquid && !fluids.hasWater) constraint.item = words::kOilProductionRate;
    if (isLiquid && !fluids.hasOil) constraint.item = words::kWaterProductionRate;
    const bool isMissing = (constraint.item.starts_with("OIL") && !fluids.hasOil) ||
                           (constraint.item.starts_with("WATER") && !fluids.hasWater) ||
                           (constraint.item.starts_with("GAS") && !fluids.hasGas);
    if (!isMissing) inFluids.push_back(std::move(constraint));
  }
  return inFluids;
}

void CheckConstraint(const std::string& item, WellType kind, const std::string& well) {
  const auto limits = LimitsOf(kind);
  const auto limit = std::ranges::find(limits, item, &Limit::item);
  if (limit != limits.end() && !IsTubing(*limit)) return;
  throw RequestRefused("Well " + well + " can't be held by " + item + " in flow");
}

HeldByDeck KeptLimits(const DeckWell& deck, std::span<const std::string> kept) {
  const auto isKept = [&](const Limit& limit) {
    return std::ranges::find(kept, limit.keptAs) != kept.end();
  };
  return {LimitsIn(deck, isKept), "", deck.liftTable, deck.liftAmount};
}

HeldByDeck AllLimits(const DeckWell& deck) {
  const auto isKept = [](const Limit&) { return true; };
  return {LimitsIn(deck, isKept), deck.isHistory ? "" : deck.mode, deck.liftTable, deck.liftAmount};
}

bool AreMost(std::span<const WellConstraint> constraints, const std::vector<double>& most) {
  constexpr double kSameShare = 1e-4;
  bool isAnyThere = false;
  for (const WellConstraint& constraint : constraints) {
    const auto item = FindFlowItem(constraint.item);
    if (!item || !constraint.item.ends_with("_RATE")) continue;
    const double rate = FlowItemValue(*item, most);
    if (constraint.value < (1.0 - kSameShare) * rate) return false;
    isAnyThere = isAnyThere || rate > 0.0;
  }
  return isAnyThere;
}

std::vector<HostControls> BeyondMost(std::vector<HostControls> controls) {
  constexpr double kBeyond = 10.0;
  for (HostControls& host : controls) {
    if (!host.wantsMost) continue;
    for (WellConstraint& limit : host.constraints) {
      if (limit.item.ends_with("_RATE")) limit.value *= kBeyond;
    }
  }
  return controls;
}

bool IsHeldOpen(WellType kind, const HostControls& host) {
  const bool isOpen = host.status.empty() || host.status == words::kOpen;
  return isOpen && !Columns(kind, host, {}).AreAllZero();
}

std::string ControlKeyword(const std::string& well, WellType kind, const HostControls& host,
                           const HeldByDeck& kept, NamedLimits* named) {
  const Columns columns(kind, host, kept);
  const std::string mode = columns.Mode().empty() ? "BHP" : columns.Mode();
  const std::string name = "'" + well + "' ";
  const std::string status = IsHeldOpen(kind, host) ? "OPEN " : "SHUT ";
  if (kind == WellType::kProducer) {
    return "WCONPROD\n" + name + status + mode + columns.Text(well, named) + " /\n/\n";
  }
  const std::string phase = kind == WellType::kGasInjector ? "GAS " : "WATER ";
  return "WCONINJE\n" + name + phase + status + mode + columns.Text(well, named) + " /\n/\n";
}

std::string LimitName(const NamedLimit& limit) { return limit.name.substr(kNamePrefix.size()); }

std::string NamesKeyword() {
  std::set<std::string> names;
  for (const auto& limits :
       {std::span<const Limit>(kProducerLimits), std::span<const Limit>(kWaterInjectorLimits),
        std::span<const Limit>(kGasInjectorLimits)}) {
    for (const Limit& limit : limits) names.insert(NameOf(limit));
  }
  std::string text = "UDQ\n";
  for (const std::string& name : names) {
    text.append("DEFINE ").append(name).append(" 0 /\nUPDATE ").append(name).append(" OFF /\n");
  }
  return text + "/\n";
}

std::string UptimeKeyword(const std::string& well, double fraction) {
  return "WEFAC\n'" + well + "' " + Format(fraction) + " /\n/\n";
}

}  // namespace gantry::flowlink
