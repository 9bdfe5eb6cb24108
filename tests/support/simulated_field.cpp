#include "support/simulated_field.h"

#include <algorithm>
#include <stdexcept>

namespace gantry::test {

namespace {

constexpr double kGasOfLiquid = 100.0;
constexpr double kWaterOfLiquid = 0.25;

/// The numbers of a well that don't hang on its kind.
const std::map<std::string, double> kFixedItems = {
    {"TEMPERATURE", 80.0},
    {"GAS_DENSITY", 1.0},
    {"WATER_DENSITY", 1000.0},
    {"OIL_DENSITY", 800.0},
    {"TOTAL_MOLE_FRACTION[1]", 0.75},
    {"TOTAL_MOLE_FRACTION[2]", 0.25},
};

/// What one unit of flow is in each rate of a kind of well.
const std::map<std::string, std::map<std::string, double>> kRatesOfFlow = {
    {"PRODUCER",
     {{"OIL_PRODUCTION_RATE", 1.0 - kWaterOfLiquid},
      {"WATER_PRODUCTION_RATE", kWaterOfLiquid},
      {"LIQUID_PRODUCTION_RATE", 1.0},
      {"GAS_PRODUCTION_RATE", kGasOfLiquid}}},
    {"WATER_INJECTOR", {{"WATER_INJECTION_RATE", 1.0}}},
    {"GAS_INJECTOR", {{"GAS_INJECTION_RATE", 1.0}}},
};

Texts AskedWells(const SimulatedField& field, const Entries& request) {
  Texts names = Find<Texts>(request, "WELNAMES");
  if (names != Texts{"*"} && !field.tellsOfAllWells) return names;
  names.clear();
  for (const SimulatedWell& well : field.wells) names.push_back(well.name);
  return names;
}

Entry NumbersOf(const SimulatedField& field, const SimulatedWell& well, const Texts& items) {
  Numbers values;
  for (const std::string& item : items) {
    values.push_back(field.valueOf ? field.valueOf(well, item) : well.Value(item));
  }
  return {"VALUES", values};
}

Entry WordsOf(const SimulatedWell& well, const Texts& items) {
  Texts values;
  for (const std::string& item : items) values.push_back(item == "TYPE" ? well.type : well.status);
  return {"VALUES", values};
}

Entries TellWells(SimulatedField& field, const Entries& request) {
  const bool asWords = request[1].name == "QWELLS_STR";
  Texts items = Find<Texts>(request, "QITEMS");
  if (field.tellsItemsBackwards) std::ranges::reverse(items);
  Entries reply = {"REPLY", {"QITEMS", items}};
  for (const std::string& name : AskedWells(field, request)) {
    const SimulatedWell& well = field.At(name);
    const bool isToldOtherwise = !asWords && field.toldAs.contains(name);
    reply.emplace_back("WELLNAME", Texts{isToldOtherwise ? field.toldAs.at(name) : name});
    reply.push_back(asWords ? WordsOf(well, items) : NumbersOf(field, well, items));
  }
  reply.emplace_back("END");
  return reply;
}

Entries TellReservoir(SimulatedField& field, const Entries& request) {
  const std::map<std::string, Entry> answers = {
      {"START_DATE", {"VALUES", field.startDate}},
      {"IX_VERSION", {"VALUES", Texts{field.version}}},
      {"UNIT_SYSTEM", {"VALUES", Texts{field.isMetric ? "ECLIPSE_METRIC" : "ECLIPSE_FIELD"}}},
      {"FM_FLUID_MODEL",
       {"VALUES", Texts{field.components.empty() ? "BLACKOIL" : "COMPOSITIONAL"}}},
      {"RES_FLUID_MODEL", {"VALUES", Texts{"unread"}}}};
  Entries reply = {"REPLY"};
  for (const std::string& item : Find<Texts>(request, "QITEMS")) {
    reply.insert(reply.end(), {{"QITEM", Texts{item}}, answers.at(item)});
  }
  reply.emplace_back("END");
  return reply;
}

Entries TellFluid(SimulatedField& field, const Entries& /*request*/) {
  Entries reply = {"REPLY",
                   {"FLUIDMODELDNAME", Texts{"Fluid"}},
                   {"EOSNAME", Texts{field.eosName}},
                   {"NCOMPS", field.components},
                   {"BIC", field.binaryInteraction}};
  for (const auto& [name, values] : field.eosProperties) {
    reply.insert(reply.end(), {{"EOSPROPNAME", Texts{name}}, {"VALUES", values}});
  }
  reply.emplace_back("END");
  return reply;
}

void TakeConstraints(SimulatedField& field, const Entries& request) {
  for (size_t i = 2; i + 1 < request.size(); i += 4) {
    SimulatedWell& well = field.At(std::get<Texts>(request[i].data).front());
    const Texts& items = std::get<Texts>(request[i + 1].data);
    const Numbers& values = std::get<Numbers>(request[i + 2].data);
    for (size_t j = 0; j < items.size(); ++j) well.constraints[items[j]] = values[j];
  }
}

/// A value for each of the wells that are named.
template <class T, auto kMember>
void Take(SimulatedField& field, const Entries& request) {
  const Texts names = Find<Texts>(request, "WELNAMES");
  const auto values = Find<std::vector<T>>(request, "VALUES");
  for (size_t i = 0; i < names.size(); ++i) field.At(names[i]).*kMember = values[i];
}

Entries TakeSource(SimulatedField& field, const Entries& request) {
  const bool isInjector = field.At(Find<Texts>(request, "WELLNAME").front()).type != "PRODUCER";
  return {"REPLY", {"STRET", Ints{isInjector ? 1 : 0}}, "END"};
}

Entries Run(SimulatedField& field, const Entries& request) {
  const Numbers until = Find<Numbers>(request, "TIME");
  if (!until.empty() && until.front() > field.endOfRun) return {"FINISHED", "END"};
  if (!until.empty()) field.days = until.front();
  return Step(field.days < field.endOfRun ? "BEGIN_NEWTON" : "END_SIMULATE", field.days,
              field.date);
}

void Note(SimulatedField& field, const Entries& order) {
  std::string text = Describe(order);
  text.pop_back();
  field.orders.push_back(">> " + text);
}

/// An answer that isn't the field's own; none at all hangs up.
std::vector<Entries> SayInstead(const Entries& answer, bool thenIsReady) {
  if (answer.empty()) return {};
  if (thenIsReady) return {answer, {"READY", "END"}};
  return {answer};
}

}  // namespace

double SimulatedWell::Flow() const {
  double flow = potential;
  for (const auto& [item, rateOfFlow] : kRatesOfFlow.at(type)) {
    const auto limit = constraints.find(item);
    if (limit != constraints.end()) flow = std::min(flow, limit->second / rateOfFlow);
  }
  return status == "OPEN" ? flow : 0.0;
}

double SimulatedWell::Value(const std::string& item) const {
  if (item == "UPTIME_FRACTION") return uptime;
  if (item == "BOTTOM_HOLE_PRESSURE") return 250.0 - Flow() / 10.0;
  if (item == "TUBING_HEAD_PRESSURE") return 150.0 - Flow() / 10.0;
  if (const auto fixed = kFixedItems.find(item); fixed != kFixedItems.end()) return fixed->second;
  const auto& rates = kRatesOfFlow.at(type);
  const auto rate = rates.find(item);
  return rate == rates.end() ? 0.0 : Flow() * rate->second;
}

SimulatedWell& SimulatedField::At(const std::string& name) {
  for (size_t i = 0; i < wells.size(); ++i) {
    const size_t place = (next_ + i) % wells.size();
    if (wells[place].name != name) continue;
    next_ = place + 1;
    return wells[place];
  }
  throw std::runtime_error("the field has no well " + name);
}

std::vector<Entries> AnswerOnWire(SimulatedField& field, const Entries& request) {
  using Teller = Entries (*)(SimulatedField&, const Entries&);
  using Taker = void (*)(SimulatedField&, const Entries&);
  static const std::map<std::string, Teller> kTellers = {
      {"QWELLS", TellWells},
      {"QWELLS_STR", TellWells},
      {"QRESVR", TellReservoir},
      {"QRESVR_STR", TellReservoir},
      {"QRFLUIDMODEL", TellFluid},
      {"QWCONSTRAINTS", [](SimulatedField&, const Entries&) { return Parse("REPLY END"); }},
      {"CREATE_FLDSRCEXT", TakeSource},
  };
  static const std::map<std::string, Taker> kTakers = {
      {"SETWCONSTRAINTS", TakeConstraints},
      {"SETWSTATUS", Take<std::string, &SimulatedWell::status>},
      {"SETWELLS", Take<double, &SimulatedWell::uptime>},
      {"SETWSTRE", [](SimulatedField&, const Entries&) {}},
  };
  const Entries ready = {"READY", "END"};
  ++field.requests;
  const std::string& verb = request[0].name;
  const bool isWrapped = verb == "QUERY" || verb == "SET";
  const std::string& name = request[isWrapped ? 1 : 0].name;
  if (const auto other = field.said.find(name); other != field.said.end()) {
    return SayInstead(other->second, isWrapped);
  }
  if (verb == "SETUP") {
    return {Parse("STARTED ERRORS{} END"), Step(field.position, field.days, field.date)};
  }
  if (verb != "QUERY") Note(field, request);
  if (name == "SHUTDOWN") return {{"FINISHED", "END"}};
  if (!isWrapped) return {Run(field, request)};
  if (const auto taker = kTakers.find(name); taker != kTakers.end()) {
    taker->second(field, request);
    return {ready};
  }
  return {kTellers.at(name)(field, request), ready};
}

}  // namespace gantry::test
