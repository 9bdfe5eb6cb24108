#include "fieldrun/peer_check/well_talk.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "client/inflow_sweep.h"
#include "client/words.h"

namespace gantry::fieldrun {
namespace {

/// The limits from which a driver's sweep starts.
Doubles Unlimited(const PeerModel& model, const Strings& items) {
  const UnitConverter units(model.isMetric);
  Doubles limits;
  for (const std::string& item : items) limits.push_back(UnlimitedRate(item, units));
  return limits;
}

}  // namespace

const HeldRate& HeldRateOf(const PeerWell& well) {
  static const HeldRate producer = {{words::kLiquidProductionRate, words::kGasProductionRate},
                                    {words::kOilProductionRate, words::kWaterProductionRate}};
  static const HeldRate waterInjector = {{words::kWaterInjectionRate},
                                         {words::kWaterInjectionRate}};
  static const HeldRate gasInjector = {{words::kGasInjectionRate}, {words::kGasInjectionRate}};
  if (well.type == words::kProducer) return producer;
  return well.type == words::kWaterInjector ? waterInjector : gasInjector;
}

std::vector<Doubles> AskWells(CheckedSession& session, const Strings& items) {
  const Strings wells = session.Model().WellNames();
  const WellQueryResult reply = session.Client().query_wells(wells, items);
  Require(reply.items == items, fmt::format("the items {}", reply.items));
  Require(reply.wells == wells, fmt::format("the wells {}", reply.wells));
  std::vector<Doubles> rows;
  for (size_t well = 0; well < wells.size(); ++well) {
    const std::span<const double> row = reply.values[well];
    for (size_t i = 0; i < items.size(); ++i) {
      Require(std::isfinite(row[i]),
              fmt::format("{} of {} of well {}", items[i], row[i], wells[well]));
    }
    rows.emplace_back(row.begin(), row.end());
  }
  return rows;
}

Doubles AskHeldRates(CheckedSession& session) {
  const Strings items = {words::kOilProductionRate, words::kWaterProductionRate,
                         words::kWaterInjectionRate, words::kGasInjectionRate};
  Doubles rates;
  const std::vector<PeerWell>& wells = session.Model().wells;
  const std::vector<Doubles> rows = AskWells(session, items);
  for (size_t well = 0; well < wells.size(); ++well) {
    const Strings& held = HeldRateOf(wells[well]).rates;
    double rate = 0.0;
    for (size_t i = 0; i < items.size(); ++i) {
      if (std::ranges::find(held, items[i]) != held.end()) rate += rows[well][i];
    }
    rates.push_back(rate);
  }
  return rates;
}

void OpenWells(CheckedSession& session) {
  const Strings wells = session.Model().WellNames();
  session.Client().set_status_for_wells(wells, Strings(wells.size(), words::kOpen), words::kUser);
}

void LimitWells(CheckedSession& session, const Doubles& firstLimits) {
  std::vector<Strings> items;
  std::vector<Doubles> values;
  for (const PeerWell& well : session.Model().wells) {
    items.push_back(HeldRateOf(well).limits);
    values.push_back(Unlimited(session.Model(), items.back()));
    values.back().front() = firstLimits[values.size() - 1];
  }
  session.Client().set_user_constraints_for_wells(session.Model().WellNames(), items, values);
}

void FreeWells(CheckedSession& session) {
  std::vector<Strings> items;
  std::vector<Doubles> values;
  for (const PeerWell& well : session.Model().wells) {
    items.push_back({HeldRateOf(well).limits.back()});
    values.push_back(Unlimited(session.Model(), items.back()));
  }
  session.Client().set_user_constraints_for_wells(session.Model().WellNames(), items, values);
}

bool IsNear(double came, double due) {
  constexpr double kShare = 0.01;
  return std::abs(came - due) <= kShare * std::abs(due) + 1e-6;
}

}  // namespace gantry::fieldrun
