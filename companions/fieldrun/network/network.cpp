#include "fieldrun/network/network.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

#include <fmt/format.h>

namespace gantry::fieldrun {
namespace {

using Members = std::vector<NetworkWell*>;

enum class Side { kProducers, kInjectors };

struct GroupLimit {
  const char* name;
  Side side;
  std::optional<double> GroupSpec::*limit;
  double (*rate)(const Rates&);
};

constexpr GroupLimit kGroupLimits[] = {
    {"oil", Side::kProducers, &GroupSpec::maxOil, [](const Rates& r) { return r.oil; }},
    {"water", Side::kProducers, &GroupSpec::maxWater, [](const Rates& r) { return r.water; }},
    {"liquid", Side::kProducers, &GroupSpec::maxLiquid, [](const Rates& r) { return r.Liquid(); }},
    {"gas", Side::kProducers, &GroupSpec::maxGas, [](const Rates& r) { return r.gas; }},
    {"water injection", Side::kInjectors, &GroupSpec::maxWaterInjection,
     [](const Rates& r) { return r.water; }},
    {"gas injection", Side::kInjectors, &GroupSpec::maxGasInjection,
     [](const Rates& r) { return r.gas; }},
};

double RateOf(const NetworkWell& well, const GroupLimit& limit) {
  return well.isOpen ? limit.rate(well.curve.At(well.opening).rates) : 0;
}

double SumOf(const Members& wells, const GroupLimit& limit) {
  double sum = 0;
  for (const NetworkWell* well : wells) sum += RateOf(*well, limit);
  return sum;
}

void Settle(NetworkWell& well, double opening, const std::string& reason) {
  well.opening = opening;
  well.limitedBy = reason;
  well.isOpen = opening > 0;
}

// Every well to the same part of its flow: the part is found by bisection on the group's sum.
void ScaleDown(const Members& wells, const GroupLimit& limit, double most,
               const std::string& reason) {
  std::vector<double> sizes;
  for (const NetworkWell* well : wells) {
    sizes.push_back(well->curve.At(well->opening).rates.Size());
  }
  const auto openingAt = [&](size_t i, double part) {
    const auto size = [](const InflowPoint& point) { return point.rates.Size(); };
    return std::min(wells[i]->opening, wells[i]->curve.LargestOpening(size, part * sizes[i]));
  };
  const auto sumAt = [&](double part) {
    double sum = 0;
    for (size_t i = 0; i < wells.size(); ++i) {
      sum += limit.rate(wells[i]->curve.At(openingAt(i, part)).rates);
    }
    return sum;
  };
  double low = 0;
  double high = 1;
  for (int i = 0; i < 50; ++i) {
    const double middle = 0.5 * (low + high);
    (sumAt(middle) <= most ? low : high) = middle;
  }
  for (size_t i = 0; i < wells.size(); ++i) Settle(*wells[i], openingAt(i, low), reason);
}

// What a well makes of the limited phase for each barrel of oil. Where that says nothing, for
// injectors and for a limit on oil itself, all wells are alike.
double Offence(const NetworkWell& well, const GroupLimit& limit) {
  const Rates rates = well.curve.At(well.opening).rates;
  if (!well.spec->IsProducer()) return 1;
  return rates.oil > 0 ? limit.rate(rates) / rates.oil : std::numeric_limits<double>::max();
}

// The worst wells give way first, as far as it takes. Wells that are about as bad as each other
// give way together, so that a small difference doesn't shut one and then the other.
void CutWorst(const Members& wells, const GroupLimit& limit, double most,
              const std::string& reason) {
  constexpr double kAlike = 0.9;
  std::vector<std::pair<double, NetworkWell*>> ranked;
  for (NetworkWell* well : wells) ranked.emplace_back(Offence(*well, limit), well);
  std::stable_sort(ranked.begin(), ranked.end(),
                   [](const auto& a, const auto& b) { return a.first > b.first; });
  double excess = SumOf(wells, limit) - most;
  for (size_t first = 0; first < ranked.size() && excess > 0;) {
    Members band;
    const double worst = ranked[first].first;
    while (first < ranked.size() && ranked[first].first >= kAlike * worst) {
      band.push_back(ranked[first++].second);
    }
    const double own = SumOf(band, limit);
    if (own <= 0) continue;
    ScaleDown(band, limit, std::max(own - excess, 0.0), reason);
    excess -= own - SumOf(band, limit);
  }
}

Members OpenMembers(const Members& wells, Side side) {
  Members members;
  for (NetworkWell* well : wells) {
    const bool isOfSide = well->spec->IsProducer() == (side == Side::kProducers);
    if (well->isOpen && isOfSide) members.push_back(well);
  }
  return members;
}

void ApplyGroup(const GroupSpec& group, const Members& wells,
                std::vector<GroupLimitReport>& reports) {
  for (const GroupLimit& limit : kGroupLimits) {
    const auto& most = group.*(limit.limit);
    if (!most) continue;
    const Members open = OpenMembers(wells, limit.side);
    const double before = SumOf(open, limit);
    if (before <= *most * (1 + 1e-9)) continue;
    const std::string reason = fmt::format("group {}: {}", group.name, limit.name);
    (group.method == 0 ? ScaleDown : CutWorst)(open, limit, *most, reason);
    reports.push_back({group.name, limit.name, before, SumOf(open, limit)});
  }
}

}  // namespace

std::vector<GroupLimitReport> SolveNetwork(std::vector<NetworkWell>& wells,
                                           const std::vector<GroupSpec>& groups) {
  std::unordered_map<std::string, NetworkWell*> byName;
  Members all;
  for (NetworkWell& well : wells) {
    SolveWell(well);
    byName.emplace(well.spec->name, &well);
    all.push_back(&well);
  }
  std::vector<GroupLimitReport> reports;
  for (const GroupSpec& group : groups) {
    Members members;
    for (const std::string& name : group.wells) {
      if (const auto well = byName.find(name); well != byName.end()) {
        members.push_back(well->second);
      }
    }
    ApplyGroup(group, group.wells.empty() ? all : members, reports);
  }
  for (NetworkWell& well : wells) ShutIfLoadedUp(well);
  return reports;
}

}  // namespace gantry::fieldrun
