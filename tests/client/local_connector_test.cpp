#include <cmath>
#include <map>

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
  const std::map<int32_t, std::string> names = {{20171, "2016.2 - 2017.1"},
                                                {20162, "2016.2 - 2017.1"},
                                                {20172, "2017.2->"},
                                                {100000, "2017.2->"}};
  for (const auto& [code, name] : names) {
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
    EXPECT_EQ(FailureOf([&] { CreateLocalConnector(kVersion2017_2, peer.Port()); }),
              "Incorrect algorithmic position after connection");
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

const std::string kRungItems =
    "{OIL_PRODUCTION_RATE, GAS_PRODUCTION_RATE, WATER_PRODUCTION_RATE, WATER_INJECTION_RATE, "
    "GAS_INJECTION_RATE, TEMPERATURE, GAS_DENSITY, WATER_DENSITY, OIL_DENSITY, "
    "BOTTOM_HOLE_PRESSURE, TUBING_HEAD_PRESSURE, TOTAL_MOLE_FRACTION[1]}";
const std::string kRungItemsReversed =
    "{TOTAL_MOLE_FRACTION[1], TUBING_HEAD_PRESSURE, BOTTOM_HOLE_PRESSURE, OIL_DENSITY, "
    "WATER_DENSITY, GAS_DENSITY, TEMPERATURE, GAS_INJECTION_RATE, WATER_INJECTION_RATE, "
    "WATER_PRODUCTION_RATE, GAS_PRODUCTION_RATE, OIL_PRODUCTION_RATE}";

/// A rung's order to wells, by name. The first rung's rates are beyond what any well can do.
Entries Force(const Texts& wells, double liquid = 100000.0 * 0.158987,
              double gas = 100000.0 * 28174.0) {
  Entries message = {"SET", "SETWCONSTRAINTS"};
  for (const std::string& well : wells) {
    message.push_back({"WELLNAME", Texts{well}});
    message.push_back({"ITEMS", Texts{"LIQUID_PRODUCTION_RATE", "GAS_PRODUCTION_RATE"}});
    message.push_back({"VALUES", Numbers{liquid, gas}});
    message.push_back({"SETTERS", Texts{"USER", "USER"}});
    liquid = 100000.0 * 0.158987;  // those behind the first never answer
    gas = 100000.0 * 28174.0;
  }
  message.emplace_back("END");
  return message;
}

std::vector<ConnectorWellRecord> RecordOf(const std::string& well) {
  std::vector<ConnectorWellRecord> records(1);
  records[0].name = well;
  return records;
}

TEST(InflowSweep, ForcesRatesDownTheLadderAndTakesItemsInAnyOrder) {
  // The rates are 30 oil and 10 water, 500 gas.
  ScriptedPeer peer;
  GreetMetricConnector(peer)
      .Answer("SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{P} VALUES{OPEN} END")
      .Answer("QUERY QWELLS_STR QITEMS{TYPE} WELNAMES{P} END",
              "REPLY QITEMS{TYPE} WELLNAME{P} VALUES{PRODUCER} END");
  for (int k = 0; k < 10; ++k) {
    const double f = std::pow((10 - k) / 10.0, 2.5);
    peer.Answer(k == 0 ? Force({"P"}) : Force({"P"}, f * 40.0, f * 500.0))
        .Answer(Parse("QUERY QWELLS QITEMS" + kRungItems + " WELNAMES{P} END"),
                Parse("REPLY QITEMS" + kRungItemsReversed +
                      " WELLNAME{P} VALUES[1, 50, 60, 4, 3, 2, 80, 9, 8, 10, 500, 30] END"));
  }
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  std::vector<ConnectorWellRecord> records = RecordOf("P");
  records[0].iprOilRate = {-1.0};
  connector->GetWellIPRData(1, {"P"}, records, true, 2.5);
  const UnitConverter units(true);
  ASSERT_EQ(records[0].iprOilRate.size(), 11u) << "points are appended";
  EXPECT_EQ(records[0].iprOilRate[0], -1.0);
  EXPECT_EQ(records[0].iprOilRate[10], units.FromSimulator(30.0, kLiquidRate));
  EXPECT_EQ(records[0].iprPressure, Doubles(10, units.FromSimulator(60.0, kPressure)));
  EXPECT_EQ(RowsOf(records[0].iprComposition), std::vector(10, Doubles{1.0}));
}

TEST(InflowSweep, TakesTheWellsThatTheSimulatorTellsOf) {
  // Asked for P and Q, it has told of X instead of P, and nothing of Q.
  ScriptedPeer peer;
  GreetMetricConnector(peer)
      .ExpectAnyMessage()
      .Reply("READY END")
      .ExpectAnyMessage()
      .Reply("REPLY QITEMS{TYPE} WELLNAME{P} VALUES{PRODUCER} WELLNAME{Q} VALUES{PRODUCER} END");
  peer.Reply("READY END");
  for (int k = 0; k < 10; ++k) {
    const double f = (10 - k) / 10.0;
    peer.Answer(k == 0 ? Force({"P", "Q"}) : Force({"P", "Q"}, f * 40.0, f * 500.0))
        .Answer(Parse("QUERY QWELLS QITEMS" + kRungItems + " WELNAMES{P, Q} END"),
                Parse("REPLY QITEMS" + kRungItems +
                      " WELLNAME{X} VALUES[30, 500, 10, 3, 4, 80, 8, 9, 2, 60, 50, 1] END"));
  }
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  std::vector<ConnectorWellRecord> records = RecordOf("X");
  connector->GetWellIPRData(1, {"P", "Q"}, records, true, 1.0);
  EXPECT_EQ(records[0].iprGasRate, Doubles(10, UnitConverter(true).FromSimulator(500.0, kGasRate)));
}

/// Any questions, answered so one by one; an empty reply is just the simulator's being ready.
ScriptedPeer& Say(ScriptedPeer& peer, const std::vector<std::string>& replies) {
  for (const std::string& reply : replies) {
    peer.ExpectAnyMessage();
    if (!reply.empty()) peer.Reply(Parse(reply));
    peer.Reply("READY END");
  }
  return peer;
}

using C = CExtConnectorBase;

void ReadData(C& connector) {
  std::vector<ConnectorWellRecord> records;
  connector.GetWellData({"P"}, records);
}

void Sweep(C& connector) {
  std::vector<ConnectorWellRecord> records = RecordOf("P");
  connector.GetWellIPRData(0, {"P"}, records, true, 1.0);
}

void ReadStatuses(C& connector) {
  std::vector<ConnectorWellStatus> statuses;
  connector.GetWellStatus(statuses);
}

void ReadVariables(C& connector) {
  Doubles values;
  connector.GetWellVariables("P", {"A"}, {kNoUnit}, values);
}

void ReadStartDate(C& connector) {
  int32_t day, month, year;
  connector.GetStartDate(day, month, year);
}

TEST(LocalConnector, TellsByOperationThatAnAnswerHasAnotherContent) {
  const std::string data =
      "REPLY QITEMS{OIL_PRODUCTION_RATE, GAS_PRODUCTION_RATE, WATER_PRODUCTION_RATE, "
      "WATER_INJECTION_RATE, GAS_INJECTION_RATE, UPTIME_FRACTION, BOTTOM_HOLE_PRESSURE, "
      "TUBING_HEAD_PRESSURE} WELLNAME{P} VALUES[1, 1, 1, 1, 1, 1, 1, 1] END";
  const std::string reordered =
      "REPLY QITEMS{GAS_PRODUCTION_RATE, OIL_PRODUCTION_RATE, WATER_PRODUCTION_RATE, "
      "WATER_INJECTION_RATE, GAS_INJECTION_RATE, UPTIME_FRACTION, BOTTOM_HOLE_PRESSURE, "
      "TUBING_HEAD_PRESSURE} WELLNAME{P} VALUES[1, 1, 1, 1, 1, 1, 1, 1] END";
  const std::string producer = "REPLY QITEMS{TYPE} WELLNAME{P} VALUES{PRODUCER} END";
  const std::string rungOfQ =
      "REPLY QITEMS" + kRungItems + " WELLNAME{Q} VALUES[1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1] END";
  struct Case {
    std::vector<std::string> replies;
    void (*act)(C&);
    const char* failure;  ///< behind "Unexpected answer when querying the "
  };
  const std::vector<Case> cases = {
      {{reordered}, ReadData, "well data."},
      {{data, "REPLY QITEMS{TYPE} WELLNAME{P} VALUES{OPEN} END"}, ReadData, "well statuses."},
      {{data, "REPLY QITEMS{STATUS} WELLNAME{Q} VALUES{OPEN} END"}, ReadData, "well status data."},
      {{"REPLY END"}, ReadStatuses, "well statuses."},
      {{"", "REPLY END"}, Sweep, "well status data."},
      {{"", "REPLY QITEMS{} WELLNAME{P} VALUES{} END"}, Sweep, "well status data."},
      {{"", producer, "", "REPLY END"}, Sweep, "well IPR data."},
      {{"", producer, "", rungOfQ}, Sweep, "well IPR data."},
      {{"REPLY QITEMS{A} END"}, ReadVariables, "well data."},
      {{"REPLY QITEM{IX_VERSION} VALUES{} END"},
       [](C& c) { c.GetVersion(); },
       "INTERSECT version."},
      {{"REPLY QITEM{UNIT_SYSTEM} VALUES{a, b} END"},
       [](C& c) { c.GetMetricFlag(); },
       "unit system."},
      {{"REPLY QITEM{START_DATE} VALUES<1, 2, 3, 4, 5> END"},
       ReadStartDate,
       "INTERSECT start date."},
      {{"REPLY QITEM{FM_FLUID_MODEL} VALUES{x} END"},
       [](C& c) { c.GetCompositionalFlag(); },
       "fluid models."}};
  for (const Case& c : cases) {
    ScriptedPeer peer;
    Say(GreetMetricConnector(peer), c.replies).Start();
    const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
    EXPECT_EQ(Raised([&] { c.act(*connector); }),
              std::string("runtime_error: Unexpected answer when querying the ") + c.failure);
  }
}

TEST(LocalConnector, SendsNothingOfSizesThatDontFit) {
  ScriptedPeer peer;
  GreetMetricConnector(peer).Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_EQ(Raised([&] { connector->SetWellConstraints({"P"}, {{"A"}}, {{1.0}}, {{}}); }),
            "runtime_error: Incorrect argument dimensions passed to SetWellConstraints");
  EXPECT_EQ(Raised([&] { connector->SetWellInjectionComposition({"S"}, {}); }),
            "runtime_error: Inconsistent data sent to SetWellInjectionComposition");
}

TEST(LocalConnector, KnowsAMetricSimulatorByItsExactWordAndGivesTheFirstOfEqualItems) {
  ScriptedPeer peer;
  Say(GreetMetricConnector(peer), {"REPLY QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_METRIC2} END",
                                   "REPLY QITEMS{A, A} WELLNAME{P} VALUES[1, 2] END"})
      .Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_FALSE(connector->GetMetricFlag());
  Doubles values;
  connector->GetWellVariables("P", {"A", "A"}, {kNoUnit, kNoUnit}, values);
  EXPECT_EQ(values, (Doubles{1.0, 1.0}));
}

}  // namespace
}  // namespace gantry::test
