#include <cmath>
#include <functional>
#include <map>

#include <gtest/gtest.h>

#include "client/connector_contract.h"
#include "support/raised.h"
#include "support/scripted_peer.h"

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

/// A peer that has greeted a metric connector of the newer version.
ScriptedPeer& GreetConnector(ScriptedPeer& peer) {
  return peer.Greet()
      .Answer({"QUERY", "QRESVR_STR", {"QITEMS", Texts{"IX_VERSION"}}, "END"},
              {"REPLY", {"QITEM", Texts{"IX_VERSION"}}, {"VALUES", Texts{"2017.2"}}, "END"})
      .Answer(
          {"QUERY", "QRESVR_STR", {"QITEMS", Texts{"UNIT_SYSTEM"}}, "END"},
          {"REPLY", {"QITEM", Texts{"UNIT_SYSTEM"}}, {"VALUES", Texts{"ECLIPSE_METRIC"}}, "END"});
}

TEST(LocalConnector, IsChosenByTheVersionCode) {
  const std::map<int32_t, std::string> names = {{20171, "2016.2 - 2017.1"},
                                                {20162, "2016.2 - 2017.1"},
                                                {20172, "2017.2->"},
                                                {100000, "2017.2->"}};
  for (const auto& [code, name] : names) {
    ScriptedPeer peer;
    GreetConnector(peer).Start();
    EXPECT_EQ(CreateLocalConnector(code, peer.Port())->GetConnectorVersionName(), name);
  }
}

TEST(LocalConnector, TakesItsLowestVersionAndShutsDownBelowIt) {
  const Entries asked = {"QUERY", "QRESVR_STR", {"QITEMS", Texts{"IX_VERSION"}}, "END"};
  SimulatedField field;
  field.version = "2016.2";
  {
    LocalRig<kVersion2017_2> rig(field);
    EXPECT_NO_THROW(rig.Connect());
  }
  ScriptedPeer peer;
  peer.Greet()
      .Answer(asked, {"REPLY", {"QITEM", Texts{"IX_VERSION"}}, {"VALUES", Texts{"2016.1"}}, "END"})
      .Expect({"SHUTDOWN", "END"})
      .Reply({"FINISHED", "END"})
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
  GreetConnector(peer).Expect({"CONTINUE", "END"}).Reply({"FINISHED", "END"}).Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_EQ(Raised([&] { connector->AdvanceNewton(); }),
            "runtime_error: Incorrect algorithmic position after advancing to first timestep");
}

TEST(LocalConnector, SwallowsWhatGoesWrongInAShutdown) {
  ScriptedPeer peer;
  GreetConnector(peer).Expect({"SHUTDOWN", "END"}).Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_NO_THROW(connector->Shutdown());
  EXPECT_EQ(Raised([&] { connector->RunUntil(1.0); }),
            "logic_error: There is no session with the simulator.");
}

Entries Wells(const Texts& items, const std::string& well, const Entry& row) {
  return {"REPLY", {"QITEMS", items}, {"WELLNAME", Texts{well}}, row, "END"};
}

const Texts kRungItems = {"OIL_PRODUCTION_RATE",  "GAS_PRODUCTION_RATE",  "WATER_PRODUCTION_RATE",
                          "WATER_INJECTION_RATE", "GAS_INJECTION_RATE",   "TEMPERATURE",
                          "GAS_DENSITY",          "WATER_DENSITY",        "OIL_DENSITY",
                          "BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE", "TOTAL_MOLE_FRACTION[1]"};

Entries Ask(const std::string& query, const Texts& items, const Texts& wells) {
  return {"QUERY", query.c_str(), {"QITEMS", items}, {"WELNAMES", wells}, "END"};
}

Entries Force(const std::string& well, double liquid, double gas) {
  return {"SET",
          "SETWCONSTRAINTS",
          {"WELLNAME", Texts{well}},
          {"ITEMS", Texts{"LIQUID_PRODUCTION_RATE", "GAS_PRODUCTION_RATE"}},
          {"VALUES", Numbers{liquid, gas}},
          {"SETTERS", Texts{"USER", "USER"}},
          "END"};
}

Entries Open(const std::string& well) {
  return {"SET",
          "SETWSTATUS",
          {"WCLOSURE", Texts{"USER"}},
          {"SETITEM", Texts{"STATUS"}},
          {"WELNAMES", Texts{well}},
          {"VALUES", Texts{"OPEN"}},
          "END"};
}

std::vector<ConnectorWellRecord> RecordOf(const std::string& well) {
  std::vector<ConnectorWellRecord> records(1);
  records[0].name = well;
  return records;
}

TEST(InflowSweep, ForcesRatesDownTheLadderAndTakesItemsInAnyOrder) {
  // The reply's items stand in reverse; the rates are 30 oil and 10 water, 500 gas.
  const Texts reversed(kRungItems.rbegin(), kRungItems.rend());
  const Numbers row = {1.0, 50.0, 60.0, 4.0, 3.0, 2.0, 80.0, 9.0, 8.0, 10.0, 500.0, 30.0};
  ScriptedPeer peer;
  GreetConnector(peer).Answer(Open("P")).Answer(
      Ask("QWELLS_STR", {"TYPE"}, {"P"}), Wells({"TYPE"}, "P", {"VALUES", Texts{"PRODUCER"}}));
  for (int k = 0; k < 10; ++k) {
    const double f = std::pow((10 - k) / 10.0, 2.5);
    peer.Answer(k == 0 ? Force("P", 100000.0 * 0.158987, 100000.0 * 28174.0)
                       : Force("P", f * 40.0, f * 500.0),
                {})
        .Answer(Ask("QWELLS", kRungItems, {"P"}), Wells(reversed, "P", {"VALUES", row}));
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
  const Numbers row = {30.0, 500.0, 10.0, 3.0, 4.0, 80.0, 8.0, 9.0, 2.0, 60.0, 50.0, 1.0};
  const auto both = [](double liquid, double gas) {
    Entries message = Force("P", liquid, gas);
    const Entries other = Force("Q", 100000.0 * 0.158987, 100000.0 * 28174.0);
    message.insert(message.end() - 1, other.begin() + 2, other.end() - 1);
    return message;
  };
  ScriptedPeer peer;
  GreetConnector(peer)
      .ExpectAnyMessage()
      .Reply({"READY", "END"})
      .ExpectAnyMessage()
      .Reply({"REPLY",
              {"QITEMS", Texts{"TYPE"}},
              {"WELLNAME", Texts{"P"}},
              {"VALUES", Texts{"PRODUCER"}},
              {"WELLNAME", Texts{"Q"}},
              {"VALUES", Texts{"PRODUCER"}},
              "END"})
      .Reply({"READY", "END"});
  for (int k = 0; k < 10; ++k) {
    const double f = (10 - k) / 10.0;
    peer.Answer(k == 0 ? both(100000.0 * 0.158987, 100000.0 * 28174.0) : both(f * 40.0, f * 500.0))
        .Answer(Ask("QWELLS", kRungItems, {"P", "Q"}), Wells(kRungItems, "X", {"VALUES", row}));
  }
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  std::vector<ConnectorWellRecord> records = RecordOf("X");
  connector->GetWellIPRData(1, {"P", "Q"}, records, true, 1.0);
  EXPECT_EQ(records[0].iprGasRate, Doubles(10, UnitConverter(true).FromSimulator(500.0, kGasRate)));
}

/// The answer at which a read of one well goes wrong.
struct WrongContent {
  const char* what;
  std::function<void(ScriptedPeer&)> script;
  std::function<void(CExtConnectorBase&)> act;
  const char* failure;
};

class WrongContents : public testing::TestWithParam<WrongContent> {};

TEST_P(WrongContents, FailWithTheTextOfTheOperation) {
  ScriptedPeer peer;
  GetParam().script(GreetConnector(peer));
  peer.Start();
  const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
  EXPECT_EQ(Raised([&] { GetParam().act(*connector); }),
            "runtime_error: " + std::string(GetParam().failure));
}

void ReadData(CExtConnectorBase& connector) {
  std::vector<ConnectorWellRecord> records;
  connector.GetWellData({"P"}, records);
}

void Sweep(CExtConnectorBase& connector) {
  std::vector<ConnectorWellRecord> records = RecordOf("P");
  connector.GetWellIPRData(0, {"P"}, records, true, 1.0);
}

/// Any question, answered so.
std::function<void(ScriptedPeer&)> Say(std::vector<Entries> replies) {
  return [replies = std::move(replies)](ScriptedPeer& peer) {
    for (const Entries& reply : replies) {
      peer.ExpectAnyMessage();
      if (!reply.empty()) peer.Reply(reply);
      peer.Reply({"READY", "END"});
    }
  };
}

Texts DataItems() {
  return {"OIL_PRODUCTION_RATE",  "GAS_PRODUCTION_RATE", "WATER_PRODUCTION_RATE",
          "WATER_INJECTION_RATE", "GAS_INJECTION_RATE",  "UPTIME_FRACTION",
          "BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE"};
}

Texts Reversed(Texts items) { return {items.rbegin(), items.rend()}; }

const Entry kEight = {"VALUES", Numbers(8, 1.0)};
const Entries kReady = {};
const Entries kNothing = {"REPLY", "END"};
const Entries kIsProducer = Wells({"TYPE"}, "P", {"VALUES", Texts{"PRODUCER"}});

Entries Item(const std::string& name, const Entry& values) {
  return {"REPLY", {"QITEM", Texts{name}}, values, "END"};
}

INSTANTIATE_TEST_SUITE_P(
    LocalConnector, WrongContents,
    testing::Values(
        WrongContent{"ItemsInAnotherOrder", Say({Wells(Reversed(DataItems()), "P", kEight)}),
                     ReadData, "Unexpected answer when querying the well data."},
        WrongContent{
            "OtherStatusItem",
            Say({Wells(DataItems(), "P", kEight), Wells({"TYPE"}, "P", {"VALUES", Texts{"OPEN"}})}),
            ReadData, "Unexpected answer when querying the well statuses."},
        WrongContent{"StatusOfAnotherWell",
                     Say({Wells(DataItems(), "P", kEight),
                          Wells({"STATUS"}, "Q", {"VALUES", Texts{"OPEN"}})}),
                     ReadData, "Unexpected answer when querying the well status data."},
        WrongContent{"NoStatuses", Say({kNothing}),
                     [](CExtConnectorBase& connector) {
                       std::vector<ConnectorWellStatus> statuses;
                       connector.GetWellStatus(statuses);
                     },
                     "Unexpected answer when querying the well statuses."},
        WrongContent{"SweepOfAnUnknownWell", Say({kReady, kNothing}), Sweep,
                     "Unexpected answer when querying the well status data."},
        WrongContent{"SweepWithEmptyType", Say({kReady, Wells({}, "P", {"VALUES", Texts{}})}),
                     Sweep, "Unexpected answer when querying the well status data."},
        WrongContent{"SweepWithoutItems", Say({kReady, kIsProducer, kReady, kNothing}), Sweep,
                     "Unexpected answer when querying the well IPR data."},
        WrongContent{"SweepOfAnotherWell",
                     Say({kReady, kIsProducer, kReady,
                          Wells(kRungItems, "Q", {"VALUES", Numbers(12, 1.0)})}),
                     Sweep, "Unexpected answer when querying the well IPR data."},
        WrongContent{"VariablesOfNoWell", Say({{"REPLY", {"QITEMS", Texts{"A"}}, "END"}}),
                     [](CExtConnectorBase& connector) {
                       Doubles values;
                       connector.GetWellVariables("P", {"A"}, {kNoUnit}, values);
                     },
                     "Unexpected answer when querying the well data."},
        WrongContent{"VersionOfNothing", Say({Item("IX_VERSION", {"VALUES", Texts{}})}),
                     [](CExtConnectorBase& connector) { connector.GetVersion(); },
                     "Unexpected answer when querying the INTERSECT version."},
        WrongContent{"TwoUnitSystems", Say({Item("UNIT_SYSTEM", {"VALUES", Texts{"a", "b"}})}),
                     [](CExtConnectorBase& connector) { connector.GetMetricFlag(); },
                     "Unexpected answer when querying the unit system."},
        WrongContent{"ShortStartDate", Say({Item("START_DATE", {"VALUES", Ints{1, 2, 3, 4, 5}})}),
                     [](CExtConnectorBase& connector) {
                       int32_t day, month, year;
                       connector.GetStartDate(day, month, year);
                     },
                     "Unexpected answer when querying the INTERSECT start date."},
        WrongContent{"OneFluidModel", Say({Item("FM_FLUID_MODEL", {"VALUES", Texts{"x"}})}),
                     [](CExtConnectorBase& connector) { connector.GetCompositionalFlag(); },
                     "Unexpected answer when querying the fluid models."},
        WrongContent{
            "ConstraintsOfOtherSizes", Say({}),
            [](CExtConnectorBase&
                   connector) { connector.SetWellConstraints({"P"}, {{"A"}}, {{1.0}}, {{}}); },
            "Incorrect argument dimensions passed to SetWellConstraints"},
        WrongContent{
            "CompositionsOfOtherSizes", Say({}),
            [](CExtConnectorBase& connector) { connector.SetWellInjectionComposition({"S"}, {}); },
            "Inconsistent data sent to SetWellInjectionComposition"}),
    [](const auto& test) { return std::string(test.param.what); });

TEST(LocalConnector, KnowsAMetricSimulatorByItsExactWord) {
  ScriptedPeer peer;
  Say({Item("UNIT_SYSTEM", {"VALUES", Texts{"ECLIPSE_METRIC2"}})})(GreetConnector(peer));
  peer.Start();
  EXPECT_FALSE(CreateLocalConnector(kVersion2017_2, peer.Port())->GetMetricFlag());
}

TEST(LocalConnector, GivesTheFirstOfEqualItemsBothTimes) {
  ScriptedPeer peer;
  Say({Wells({"A", "A"}, "P", {"VALUES", Numbers{1.0, 2.0}})})(GreetConnector(peer));
  peer.Start();
  Doubles values;
  CreateLocalConnector(kVersion2017_2, peer.Port())
      ->GetWellVariables("P", {"A", "A"}, {kNoUnit, kNoUnit}, values);
  EXPECT_EQ(values, (Doubles{1.0, 1.0}));
}

}  // namespace
}  // namespace gantry::test
