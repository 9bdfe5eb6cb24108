#include "model/field_peer.h"

#include <algorithm>
#include <regex>
#include <utility>

#include "support/play.h"

namespace gantry::test {

namespace {

double ValueOf(const FieldPeer& field, const SimulatedWell& well, const std::string& item) {
  if (field.variables.contains(item)) return field.variables.at(item);
  if (item.starts_with("TOTAL_MOLE_FRACTION[")) {
    return 1.0 / static_cast<double>(field.components.size());
  }
  const auto told = [&well](const char* order) {
    const auto rate = well.constraints.find(order);
    return rate == well.constraints.end() ? 0.0 : std::min(rate->second, well.potential);
  };
  const double produced = told("LIQUID_PRODUCTION_RATE");
  const std::map<std::string, double> values = {
      {"OIL_PRODUCTION_RATE", 0.8 * produced},
      {"WATER_PRODUCTION_RATE", 0.2 * produced},
      {"GAS_PRODUCTION_RATE", 0.5 * produced},
      {"WATER_INJECTION_RATE", told("WATER_INJECTION_RATE")},
      {"GAS_INJECTION_RATE", told("GAS_INJECTION_RATE")},
      {"UPTIME_FRACTION", 1.0},
      {"BOTTOM_HOLE_PRESSURE", 3014.696 - produced},
      {"GAS_DENSITY", 0.0763},
      {"OIL_DENSITY", 62.43 * OilGravityAt(produced)},
      {"WATER_DENSITY", 65.0}};
  const auto value = values.find(item);
  return value == values.end() ? 100.0 : value->second;
}

}  // namespace

FieldPeer::FieldPeer() {
  isMetric = false;
  components.clear();
  eosName = "PENG_ROBINSON";
  binaryInteraction.clear();
  startDate = date = {2015, 1, 1, 0, 0, 0};
  endOfRun = 1e9;
  valueOf = [this](const auto& well, const auto& item) { return ValueOf(*this, well, item); };
  peer_.Serve([this](const Entries& message) { return Hear(message); });
}

std::vector<Entries> FieldPeer::Hear(const Entries& message) {
  const bool isWrapped = message[0].name == "QUERY" || message[0].name == "SET";
  const std::string& name = message[isWrapped ? 1 : 0].name;
  Heed heed;
  Change([&] { heed = heed_; });
  if (heed) heed(name);
  const std::lock_guard guard(lock_);
  eosProperties = {{"Molecular weight", Numbers(components.size(), 16.0)}};
  return AnswerOnWire(*this, message);
}

Texts FieldPeer::TakeOrders() {
  static const std::regex kSweep("SET SETWSTATUS[^\n]*\n(SET SETWCONSTRAINTS[^\n]*\n){10}");
  std::string text;
  Change([&] {
    for (const std::string& order : std::exchange(orders, {})) {
      text += order.substr(3, order.rfind(" END") - 3) + "\n";
    }
  });
  Texts lines = Split(std::regex_replace(text, kSweep, ""), "\n");
  lines.pop_back();
  return lines;
}

void FieldPeer::Change(const std::function<void()>& change) {
  const std::lock_guard guard(lock_);
  change();
}

}  // namespace gantry::test
