#include <algorithm>
#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "client/connector_contract.h"
#include "support/raised.h"
#include "support/well_messages.h"

namespace gantry::test {
namespace {

template <int32_t kVersionCode>
struct LocalRig {
  static constexpr bool kSetsInjection = kVersionCode >= kVersion2017_2;

  explicit LocalRig(SimulatedField& field) {
    peer.Greet()
        .Serve([&field](const Entries& request) { return AnswerOnWire(field, request); })
        .Start();
  }
  std::unique_ptr<CExtConnectorBase> Connect() {
    return CreateLocalConnector(kVersionCode, peer.Port());
  }

  ScriptedPeer peer;
};

INSTANTIATE_TYPED_TEST_SUITE_P(V2016_2, ConnectorContract, LocalRig<kVersion2016_2>);
INSTANTIATE_TYPED_TEST_SUITE_P(V2017_2, ConnectorContract, LocalRig<kVersion2017_2>);

TEST(LocalConnector, IsChosenByTheVersionCode) {
  for (const auto& [code, name] : {std::pair{20171, "2016.2 - 2017.1"},
                                   {20162, "2016.2 - 2017.1"},
                                   {20172, "2017.2->"},
                                   {100000, "2017.2->"}}) {
    ScriptedPeer peer;
    GreetMetricConnector(peer).Start();
    EXPECT_EQ(CreateLocalConnector(code, peer.Port())->GetConnectorVersionName(), name);
  }
}

TEST(LocalConnector, TakesItsLowestVersionAndShutsDownBelowIt) {
  SimulatedField field;
  field.version = "2016.2";
  {
    LocalRig<kVersion2017_2> rig(field);
    EXPECT_NO_THROW(rig.Connect());
  }
  ScriptedPeer peer;
  peer.Greet()
      .Answer("QUERY QRESVR_STR QITEMS{IX_VERSION} END",
              "REPLY QITEM{IX_VERSION} VALUES{2016.1} END")
      .Expect("SHUTDOWN END")
      .Reply("FINISHED END")
      .Start();
  EXPECT_EQ(Raised([&] { CreateLocalConnector(kVersion2016_2, peer.Port()); }),
            "exception: The simulator version (2016.1) is too old for the connector being used "
            "(2016.2 - 2017.1)");
}

TEST(LocalConnector, MustStandAtTheModelDefinitionAndThenAtTheFirstNewton) {
  {
    ScriptedPeer peer;
    peer.Greet("BEGIN_NEWTON").Start();
    EXPECT_EQ(Raised([&] { CreateLocalConnector(kVersion2017_2, peer.Port()); }),
              "exception: Incorrect algorithmic position after connection");
  }
  ScriptedPeer peer;
  GreetMetricConnector(peer).Expect("CONTINUE END").Reply("FINISHED END").Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_EQ(Raised([&] { connector->AdvanceNewton(); }),
            "runtime_error: Incorrect algorithmic position after advancing to first timestep");
}

TEST(LocalConnector, SwallowsWhatGoesWrongInAShutdown) {
  ScriptedPeer peer;
  GreetMetricConnector(peer).Expect("SHUTDOWN END").Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_NO_THROW(connector->Shutdown());
  EXPECT_EQ(Raised([&] { connector->RunUntil(1.0); }),
            "logic_error: There is no session with the simulator.");
}

/// A field whose answers to the messages of one name are changed on the way to its connector.
struct OddField : SimulatedField {
  OddField() {
    peer.Greet().Serve([this](const Entries& request) { return Answer(request); }).Start();
    connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  }
  void Change(const std::string& name, const std::function<void(Entries&)>& by) {
    message = name;
    change = by;
  }
  void Say(const std::string& name, const std::string& reply) {
    Change(name, [reply](Entries& entries) { entries = Parse(reply); });
  }
  /// The inflow of these wells, as it comes to a record of each of those names.
  std::vector<ConnectorWellRecord> Sweep(const Strings& asked, const Strings& names,
                                         int32_t fractions = 0, double skewness = 1.0) {
    std::vector<ConnectorWellRecord> records(names.size());
    for (size_t i = 0; i < names.size(); ++i) records[i].name = names[i];
    connector->GetWellIPRData(fractions, asked, records, true, skewness);
    return records;
  }

  std::vector<Entries> Answer(const Entries& request) {
    std::vector<Entries> messages = AnswerOnWire(*this, request);
    const std::string& name = request[request[0].name == "SETUP" ? 0 : 1].name;
    if (name == "SETWCONSTRAINTS") orders.push_back(Describe(request));
    if (name == message) change(messages.front());
    return messages;
  }

  std::string message;
  std::function<void(Entries&)> change;
  Texts orders;  ///< the constraints, since the last look at them
  ScriptedPeer peer;
  std::unique_ptr<CExtConnectorBase> connector;
};

void TellOfXInPlaceOfP1(Entries& reply) {
  for (Entry& entry : reply) {
    if (entry == Entry("WELLNAME", Texts{"P1"})) entry.data = Texts{"X"};
  }
}

TEST(InflowSweep, BeginsBeyondWhatAnyWellCanDoAndTakesItemsInAnyOrder) {
  OddField field;
  field.Change("QWELLS", [](Entries& reply) {
    std::ranges::reverse(std::get<Texts>(reply.at(1).data));
    std::ranges::reverse(std::get<Numbers>(reply.at(3).data));
  });
  const ConnectorWellRecord record = field.Sweep({"P1"}, {"P1"}, 2, 2.5).front();
  ASSERT_EQ(field.orders.size(), 10u);
  EXPECT_EQ(field.orders[0],
            "SET SETWCONSTRAINTS WELLNAME{P1} ITEMS{LIQUID_PRODUCTION_RATE, GAS_PRODUCTION_RATE} "
            "VALUES{15898.699999999999, 2817400000} SETTERS{USER, USER} END ");
  EXPECT_DOUBLE_EQ(record.iprOilRate[0], 750.0 / 0.158987);
  EXPECT_DOUBLE_EQ(record.iprOilRate[1], 750.0 * std::pow(0.9, 2.5) / 0.158987);
  EXPECT_EQ(RowsOf(record.iprComposition), std::vector(10, Doubles{0.75, 0.25}));
}

TEST(InflowSweep, TakesTheWellsThatTheSimulatorTellsOf) {
  OddField field;
  field.Change("QWELLS", TellOfXInPlaceOfP1);
  const auto lastGas = [&](const Strings& asked, const Strings& names) {
    return field.Sweep(asked, names).front().iprGasRate.at(9);
  };
  EXPECT_DOUBLE_EQ(lastGas({"P1"}, {"X"}), 10000.0 / 28174.0) << "X in the place of P1 is P1";
  EXPECT_EQ(lastGas({"P2", "P1"}, {"X", "P2"}), 0.0)
      << "in that of P2, which is there itself, it is nobody and makes no gas";
}

using C = CExtConnectorBase;

void ReadData(C& connector) {
  std::vector<ConnectorWellRecord> records;
  connector.GetWellData({"P1"}, records);
}

void Sweep(C& connector) {
  std::vector<ConnectorWellRecord> records(1);
  records[0].name = "P1";
  connector.GetWellIPRData(0, {"P1"}, records, true, 1.0);
}

void ReadStatuses(C& connector) {
  std::vector<ConnectorWellStatus> statuses;
  connector.GetWellStatus(statuses);
}

void ReadVariables(C& connector) {
  Doubles values;
  connector.GetWellVariables("P1", {"A"}, {kNoUnit}, values);
}

void ReadStartDate(C& connector) {
  int32_t day, month, year;
  connector.GetStartDate(day, month, year);
}

TEST(LocalConnector, TellsByOperationThatAnAnswerHasAnotherContent) {
  struct Case {
    std::string question, reply;
    std::function<void(C&)> act;
    const char* failure;  ///< behind "Unexpected answer when querying the "
  };
  const std::vector<Case> cases = {
      {"QWELLS", "REPLY QITEMS{A} WELLNAME{P1} VALUES[1] END", ReadData, "well data."},
      {"QWELLS_STR", "REPLY QITEMS{TYPE} WELLNAME{P1} VALUES{OPEN} END", ReadData,
       "well statuses."},
      {"QWELLS_STR", "REPLY QITEMS{STATUS} WELLNAME{Q} VALUES{OPEN} END", ReadData,
       "well status data."},
      {"QWELLS_STR", "REPLY END", ReadStatuses, "well statuses."},
      {"QWELLS_STR", "REPLY END", Sweep, "well status data."},
      {"QWELLS_STR", "REPLY QITEMS{} WELLNAME{P1} VALUES{} END", Sweep, "well status data."},
      {"QWELLS", "REPLY END", Sweep, "well IPR data."},
      {"QWELLS", "REPLY QITEMS{A} END", ReadVariables, "well data."},
      {"QRESVR_STR", "REPLY QITEM{IX_VERSION} VALUES{} END", &C::GetVersion, "INTERSECT version."},
      {"QRESVR_STR", "REPLY QITEM{UNIT_SYSTEM} VALUES{a, b} END", &C::GetMetricFlag,
       "unit system."},
      {"QRESVR", "REPLY QITEM{START_DATE} VALUES<1, 2, 3, 4, 5> END", ReadStartDate,
       "INTERSECT start date."},
      {"QRESVR_STR", "REPLY QITEM{FM_FLUID_MODEL} VALUES{x} END", &C::GetCompositionalFlag,
       "fluid models."},
      {"QWELLS", "REPLY QITEMS{OIL_PRODUCTION_RATE} WELLNAME{P1} VALUES[1] END", Sweep,
       "well IPR data."}};
  OddField field;
  const auto failure = [&](const std::function<void(C&)>& act) {
    return Raised([&] { act(*field.connector); });
  };
  for (const Case& c : cases) {
    field.Say(c.question, c.reply);
    EXPECT_EQ(failure(c.act),
              std::string("runtime_error: Unexpected answer when querying the ") + c.failure);
  }
  field.Change("QWELLS", TellOfXInPlaceOfP1);
  EXPECT_EQ(failure(Sweep), "runtime_error: Unexpected answer when querying the well IPR data.");
}

TEST(LocalConnector, SendsNothingOfSizesThatDontFit) {
  OddField field;
  const int before = field.requests;
  EXPECT_EQ(Raised([&] { field.connector->SetWellConstraints({"P"}, {{"A"}}, {{1.0}}, {{}}); }),
            "runtime_error: Incorrect argument dimensions passed to SetWellConstraints");
  EXPECT_EQ(Raised([&] { field.connector->SetWellInjectionComposition({"S"}, {}); }),
            "runtime_error: Inconsistent data sent to SetWellInjectionComposition");
  EXPECT_EQ(field.requests, before);
  field.connector->PollWellStatuses();
  field.connector->PollWellConstraints();
  EXPECT_EQ(field.requests, before + 2);
}

TEST(LocalConnector, KnowsAMetricSimulatorByItsExactWordAndGivesTheFirstOfEqualItems) {
  OddField field;
  field.Say("QRESVR_STR", "REPLY QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_METRIC2} END");
  EXPECT_FALSE(field.connector->GetMetricFlag());
  field.Say("QWELLS", "REPLY QITEMS{A, A} WELLNAME{P} VALUES[1, 2] END");
  Doubles values;
  field.connector->GetWellVariables("P1", {"A", "A"}, {kNoUnit, kNoUnit}, values);
  EXPECT_EQ(values, (Doubles{1.0, 1.0}));
}

}  // namespace
}  // namespace gantry::test
