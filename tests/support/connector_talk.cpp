#include "support/connector_talk.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>

#include "support/simulated_field.h"

namespace gantry::test {
namespace {

using C = CExtConnectorBase;
using Verb = void (*)(C& connector, const Entries& call, Texts& told);

double NumberOf(const Entries& call, const std::string& name) {
  return Find<Numbers>(call, name).at(0);
}
std::string TextOf(const Entries& call, const std::string& name) {
  return Find<Texts>(call, name).at(0);
}

template <auto kAct>
void Do(C& connector, const Entries& /*call*/, Texts& /*told*/) {
  (connector.*kAct)();
}

template <auto kRead>
void Tell(C& connector, const Entries& /*call*/, Texts& told) {
  told.push_back(Line((connector.*kRead)()));
}

template <auto kRead>
void TellDate(C& connector, const Entries& /*call*/, Texts& told) {
  int32_t day = 7, month = 7, year = 7;
  (connector.*kRead)(day, month, year);
  told.push_back(Line(day, month, year));
}

void TellProperties(C& connector, const Entries& /*call*/, Texts& told) {
  EOSProperties eos;
  eos.parachor = {1.0};
  connector.GetEOSProperties(eos);
  told.push_back(Line(eos.eosName, eos.componentCount));
  told.push_back(Line("present", eos.presentProperties));
  told.push_back(LineOf(eos.componentNames));
  const std::pair<const char*, const Doubles&> lists[] = {{"weight", eos.molecularWeight},
                                                          {"temperature", eos.criticalTemperature},
                                                          {"pressure", eos.criticalPressure},
                                                          {"volume", eos.criticalVolume},
                                                          {"acentric", eos.acentricFactor},
                                                          {"extra", eos.extraProperty},
                                                          {"boiling", eos.boilingPoint},
                                                          {"shift", eos.volumeShift},
                                                          {"omega a", eos.omegaA},
                                                          {"omega b", eos.omegaB},
                                                          {"parachor", eos.parachor},
                                                          {"interaction", eos.binaryInteraction}};
  for (const auto& [name, values] : lists) told.push_back(Line(name, LineOf(values)));
}

void TellStatuses(C& connector, const Entries& /*call*/, Texts& told) {
  std::vector<ConnectorWellStatus> statuses = {{"old", "", ""}};
  connector.GetWellStatus(statuses);
  for (const auto& well : statuses) told.push_back(Line(well.name, well.type, well.status));
}

/// A record of each of NAMES.
std::vector<ConnectorWellRecord> RecordsOf(const Entries& call) {
  std::vector<ConnectorWellRecord> records;
  for (const std::string& name : Find<Texts>(call, "NAMES")) records.emplace_back().name = name;
  return records;
}

void TellData(C& connector, const Entries& call, Texts& told) {
  std::vector<ConnectorWellRecord> records = RecordsOf(call);
  connector.GetWellData(Find<Texts>(call, "WELLS"), records);
  for (const auto& r : records) {
    told.push_back(Line(r.name, r.status, r.oilRate, r.gasRate, r.waterRate, r.waterInjectionRate,
                        r.gasInjectionRate, r.bottomHolePressure, r.tubingHeadPressure,
                        r.uptimeFraction));
  }
}

/// The lists of a record that SHOW names.
void TellInflow(const ConnectorWellRecord& r, const Entries& call, Texts& told) {
  const std::map<std::string, Doubles> lists = {
      {"pressure", r.iprPressure},       {"oil", r.iprOilRate},
      {"water", r.iprWaterRate},         {"gas", r.iprGasRate},
      {"temperature", r.iprTemperature}, {"gas-density", r.iprGasDensity},
      {"oil-density", r.iprOilDensity},  {"water-density", r.iprWaterDensity}};
  for (const std::string& name : Find<Texts>(call, "SHOW")) {
    if (lists.contains(name)) told.push_back(Line(r.name, name, LineOf(lists.at(name))));
    if (name != "composition") continue;
    for (size_t i = 0; i < r.iprComposition.RowCount(); ++i) {
      told.push_back(Line(r.name, name, LineOf(r.iprComposition[i])));
    }
  }
}

/// The inflow of WELLS, as it comes to a record of each of NAMES; without those, to that of its
/// data.
void MeasureInflow(C& connector, const Entries& call, Texts& told) {
  const Texts wells = Find<Texts>(call, "WELLS");
  const bool usesBottomHole = Find<Texts>(call, "AT") != Texts{"THP"};
  const int32_t components = Find<Ints>(call, "COMPONENTS").at(0);
  const double skewness = NumberOf(call, "SKEWNESS");
  std::vector<ConnectorWellRecord> records = RecordsOf(call);
  for (ConnectorWellRecord& record : records) record.iprPressure = {42.0};
  if (records.empty()) {
    records.resize(2);  // of an earlier read, they give way
    connector.GetWellDataAndIPR(components, wells, records, usesBottomHole, skewness);
  } else {
    connector.GetWellIPRData(components, wells, records, usesBottomHole, skewness);
  }
  for (const auto& record : records) TellInflow(record, call, told);
}

const std::map<std::string, Verb> kVerbs = {
    {"AdvanceNewton", Do<&C::AdvanceNewton>},
    {"Shutdown", Do<&C::Shutdown>},
    {"PollWellStatuses", Do<&C::PollWellStatuses>},
    {"PollWellConstraints", Do<&C::PollWellConstraints>},
    {"RunUntil", [](C& c, auto& call, auto&) { c.RunUntil(NumberOf(call, "DAYS")); }},
    {"GetMinimumSimulatorVersion", Tell<&C::GetMinimumSimulatorVersion>},
    {"GetConnectorVersionName", Tell<&C::GetConnectorVersionName>},
    {"GetVersion", Tell<&C::GetVersion>},
    {"GetTimeDays", Tell<&C::GetTimeDays>},
    {"GetMetricFlag", Tell<&C::GetMetricFlag>},
    {"GetCompositionalFlag", Tell<&C::GetCompositionalFlag>},
    {"GetTerminationFlag", Tell<&C::GetTerminationFlag>},
    {"GetDate", TellDate<&C::GetDate>},
    {"GetStartDate", TellDate<&C::GetStartDate>},
    {"GetEOSProperties", TellProperties},
    {"GetWellStatus", TellStatuses},
    {"GetWellData", TellData},
    {"GetWellVariables",
     [](C& c, auto& call, auto& told) {
       Doubles values = {7.0};
       c.GetWellVariables(TextOf(call, "WELL"), Find<Texts>(call, "ITEMS"),
                          Find<Ints>(call, "CODES"), values);
       told.push_back(LineOf(values));
     }},
    {"GetWellIPRData", MeasureInflow},
    {"GetWellDataAndIPR", MeasureInflow},
    {"SetWellStatus",
     [](C& c, auto& call, auto&) {
       c.SetWellStatus(Find<Texts>(call, "WELLS"), Find<Texts>(call, "VALUES"));
     }},
    {"SetWellUptime",
     [](C& c, auto& call, auto&) {
       c.SetWellUptime(Find<Texts>(call, "WELLS"), Find<Numbers>(call, "VALUES"));
     }},
    {"SetWellConstraints",
     [](C& c, auto& call, auto&) {
       c.SetWellConstraints(Find<Texts>(call, "WELLS"), FindAll<Texts>(call, "ITEMS"),
                            FindAll<Numbers>(call, "VALUES"), FindAll<Ints>(call, "CODES"));
     }},
    {"SetInjectionSource",
     [](C& c, auto& call, auto& told) {
       told.push_back(Line(c.SetInjectionSource(TextOf(call, "WELL"), TextOf(call, "SOURCE"))));
     }},
    {"SetWellInjectionComposition",
     [](C& c, auto& call, auto&) {
       c.SetWellInjectionComposition(Find<Texts>(call, "SOURCES"),
                                     FindAll<Numbers>(call, "FRACTIONS"));
     }},
};

void Change(SimulatedField& field, const Entries& call) {
  const auto text = [&call](const char* name, std::string& target) {
    if (const Texts given = Find<Texts>(call, name); !given.empty()) target = given[0];
  };
  text("VERSION", field.version);
  text("POSITION", field.position);
  if (const Ints metric = Find<Ints>(call, "METRIC"); !metric.empty()) {
    field.isMetric = metric[0] != 0;
  }
  if (const Texts names = Find<Texts>(call, "CALLS"); !names.empty()) {
    field.toldAs[names[0]] = names[1];
  }
  field.tellsItemsBackwards = !Find<Texts>(call, "ITEMS").empty();
}

class FieldTalk {
 public:
  explicit FieldTalk(const MakeRig& makeRig) : makeRig_(makeRig) {}

  void Act(const Turn& turn, Texts& told) {
    const Entries call = Parse(turn.call);
    TakeOrders();
    Do(call, told);
    Texts orders = TakeOrders();
    orders.resize(std::min(orders.size(), turn.wire.size()));
    EXPECT_EQ(orders, turn.wire) << turn.call;
  }

 private:
  void Do(const Entries& call, Texts& told) {
    const std::string& name = call[0].name;
    if (name == "Connect") return Connect();
    if (name != "Field" && name != "Say" && name != "Requests") return Ask(*connector_, call, told);
    const std::lock_guard guard(lock_);
    if (name == "Field") return Change(field_, call);
    if (name == "Requests") return told.push_back(Line(std::exchange(field_.requests, 0)));
    field_.said = {{call[1].name, Entries(call.begin() + 2, call.end())}};
  }

  void Connect() {
    connector_.reset();
    rig_.reset();
    rig_ = makeRig_([this](const Entries& request) {
      const std::lock_guard guard(lock_);
      return AnswerOnWire(field_, request);
    });
    connector_ = rig_->Connect();
  }

  Texts TakeOrders() {
    const std::lock_guard guard(lock_);
    return std::exchange(field_.orders, {});
  }

  const MakeRig& makeRig_;
  std::mutex lock_;  ///< of the field, which answers on the peer's thread
  SimulatedField field_;
  std::unique_ptr<ConnectorRig> rig_;
  std::unique_ptr<CExtConnectorBase> connector_;
};

}  // namespace

void Ask(CExtConnectorBase& connector, const Entries& call, Texts& told) {
  kVerbs.at(call[0].name)(connector, call, told);
}

void PlayWithField(const std::string& file, const std::string& version, const MakeRig& makeRig) {
  for (const Talk& talk : TalksIn(file)) {
    const bool isOfOne = talk.name.find(" 20") != std::string::npos;
    if (isOfOne && !talk.name.ends_with(version)) continue;
    FieldTalk played(makeRig);
    Play(talk, [&played](const Turn& turn, Texts& told) { played.Act(turn, told); });
  }
}

}  // namespace gantry::test
