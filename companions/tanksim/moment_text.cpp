#include "tanksim/moment_text.h"

#include <cmath>
#include <limits>
#include <stdexcept>

namespace gantry::simulator {
namespace {

using nlohmann::json;

/// JSON has no number for what is without limit.
json Limitless(double value) { return std::isfinite(value) ? json(value) : json(nullptr); }

double LimitOf(const json& value) {
  return value.is_null() ? std::numeric_limits<double>::infinity() : value.get<double>();
}

/// What stands behind a word that isn't known.
template <class Value>
Value Known(const std::optional<Value>& value, const std::string& word) {
  if (!value) throw std::invalid_argument("it has the unknown word " + word);
  return *value;
}

json ToJson(const TankMoment& tank) {
  return {{"pressure", tank.pressure},
          {"aquifer_pressure", tank.aquiferPressure},
          {"hydrocarbons", tank.contents.hydrocarbons},
          {"water", tank.contents.water},
          {"dissolved_gas_limit", Limitless(tank.contents.dissolvedGasLimit)}};
}

TankMoment TankOf(const json& tank) {
  return {tank.at("pressure"),
          tank.at("aquifer_pressure"),
          {tank.at("hydrocarbons").get<Amounts>(), tank.at("water"),
           LimitOf(tank.at("dissolved_gas_limit"))}};
}

json ToJson(const WellMoment& well) {
  json limits = json::array();
  for (const WellLimit& limit : well.controllerLimits) {
    limits.push_back(json::array({WordOf(limit.item), limit.value}));
  }
  json totals;
  for (const WellVolume& key : kWellVolumes) totals[key.name] = well.totals.*key.volume;
  return {{"status", WordOf(well.status)},
          {"uptime", well.uptime},
          {"limits", limits},
          {"injected_composition", well.injectedComposition},
          {"totals", totals}};
}

WellMoment WellOf(const json& text) {
  WellMoment well;
  const std::string status = text.at("status");
  well.status = Known(FindStatus(status), status);
  well.uptime = text.at("uptime");
  for (const auto& limit : text.at("limits")) {
    const std::string item = limit.at(0);
    well.controllerLimits.push_back({Known(FindLimitItem(item), item), limit.at(1)});
  }
  well.injectedComposition = text.at("injected_composition").get<std::vector<double>>();
  for (const WellVolume& key : kWellVolumes)
    well.totals.*key.volume = text.at("totals").at(key.name);
  return well;
}

}  // namespace

json ToJson(const RunMoment& moment) {
  json tanks = json::array();
  json wells = json::array();
  for (const TankMoment& tank : moment.tanks) tanks.push_back(ToJson(tank));
  for (const WellMoment& well : moment.wells) wells.push_back(ToJson(well));
  return {{"days", moment.days}, {"tanks", tanks}, {"wells", wells}};
}

RunMoment RunMomentOf(const json& text) {
  RunMoment moment{text.at("days"), {}, {}};
  for (const auto& tank : text.at("tanks")) moment.tanks.push_back(TankOf(tank));
  for (const auto& well : text.at("wells")) moment.wells.push_back(WellOf(well));
  return moment;
}

}  // namespace gantry::simulator
