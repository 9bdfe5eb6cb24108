#include "remote/remote_connector.h"

#include <array>
#include <functional>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "remote/routine_table.h"
#include "remote/socket.h"
#include "remote/wire_bytes.h"
#include "support/row_tables.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

/// The factors of a metric simulator.
constexpr double kLiquid = 0.158987;
constexpr double kGas = 28174;
constexpr double kBar = 0.0689476;

/// A controller that plays its script once a session stands.
class Controller {
 public:
  explicit Controller(bool isMetric = true, double version = 2017.2) {
    peer_.ExpectBytes(BareRequest(1)).ReplyBytes(Message(1, kAccepted));
    peer_.ExpectBytes(BareRequest(17)).ReplyBytes(Message(17, Double(version) + kAccepted));
    peer_.ExpectBytes(BareRequest(3)).ReplyBytes(Message(3, Int(isMetric ? 1 : 0) + kAccepted));
  }

  Controller& Exchange(const std::string& request, const std::string& reply) {
    peer_.ExpectBytes(request).ReplyBytes(reply);
    return *this;
  }

  std::unique_ptr<CExtConnectorBase> Connect(int32_t versionCode = kMostRecentVersion) {
    peer_.Start();
    const SocketClient socket("127.0.0.1", peer_.Port());
    RemoteSessionData data;
    data.VersionCode = versionCode;
    data.Socket = &socket;
    return CreateRemoteConnector(data);
  }

 private:
  ScriptedPeer peer_;
};

template <class Call>
std::string FailureOf(Call call) {
  try {
    call();
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  return "no failure";
}

using C = CExtConnectorBase;

/// What an operation says and hears; where it gives results, these as one text.
struct Operation {
  const char* name;
  uint32_t routine;
  std::string request;
  std::string results;  ///< in front of the acknowledgement
  std::function<void(C&, std::ostream&)> call;
  std::string outcome = "";
};

std::string EosReply() {
  std::string bytes = Text("PENG_ROBINSON") + TextList({"C1", "C2"});
  for (int list = 0; list < 12; ++list) {
    bytes += list == 4 ? DoubleList({}) : DoubleList({list + 0.5});
  }
  return bytes;
}

void TellDate(std::ostream& out, C& connector, void (C::*get)(int32_t&, int32_t&, int32_t&)) {
  int32_t day = 0, month = 0, year = 0;
  (connector.*get)(day, month, year);
  out << day << '.' << month << '.' << year;
}

void TellStatuses(C& connector, std::ostream& out) {
  std::vector<ConnectorWellStatus> statuses(1);
  connector.GetWellStatus(statuses);
  for (const auto& well : statuses) out << well.name << well.type << well.status << ';';
}

void TellProperties(C& connector, std::ostream& out) {
  EOSProperties eos;
  eos.omegaA = {9.0};
  connector.GetEOSProperties(eos);
  const UnitConverter units(true);
  out << eos.eosName << eos.componentCount << ' ' << eos.presentProperties;
  EXPECT_EQ(eos.componentNames, (Strings{"C1", "C2"}));
  EXPECT_EQ(eos.molecularWeight, Doubles{0.5});
  EXPECT_EQ(eos.criticalTemperature, Doubles{units.FromSimulator(1.5, kTemperature)});
  EXPECT_EQ(eos.criticalPressure, Doubles{units.FromSimulator(2.5, kPressure)});
  EXPECT_EQ(eos.criticalVolume, Doubles{units.FromSimulator(3.5, kCriticalVolume)});
  EXPECT_EQ(eos.extraProperty, Doubles{5.5});
  EXPECT_EQ(eos.boilingPoint, Doubles{units.FromSimulator(6.5, kTemperature)});
  EXPECT_EQ(eos.omegaA, Doubles{8.5});
  EXPECT_EQ(eos.binaryInteraction, Doubles{11.5});
}

void Constrain(C& connector, std::ostream&) {
  connector.SetWellConstraints({"P1", "P2"}, {{"BHP", "LIQ"}, {"ANY"}}, {{100.0, 10.0}, {5.0}},
                               {{kPressure, kLiquidRate}, {kNoUnit}});
}

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      {"AdvanceNewton", 7, "", "", [](C& c, auto&) { c.AdvanceNewton(); }},
      {"Shutdown", 65520, "", "", [](C& c, auto&) { c.Shutdown(); }},
      {"RunUntil", 8, Double(100.0), "", [](C& c, auto&) { c.RunUntil(100.0); }},
      {"GetVersion", 17, "", Double(2018.5), [](C& c, auto& out) { out << c.GetVersion(); },
       "2018.5"},
      {"GetTimeDays", 4, "", Double(30.25), [](C& c, auto& out) { out << c.GetTimeDays(); },
       "30.25"},
      {"GetCompositionalFlag", 5, "", Int(2),
       [](C& c, auto& out) { out << c.GetCompositionalFlag(); }, "1"},
      {"GetTerminationFlag", 9, "", Int(-1), [](C& c, auto& out) { out << c.GetTerminationFlag(); },
       "0"},
      {"GetDate", 2, "", Int(31) + Int(12) + Int(2026),
       [](C& c, auto& out) { TellDate(out, c, &C::GetDate); }, "31.12.2026"},
      {"GetStartDate", 20, "", Int(1) + Int(2) + Int(2020),
       [](C& c, auto& out) { TellDate(out, c, &C::GetStartDate); }, "1.2.2020"},
      {"GetWellStatus", 6, "",
       Int(2) + Text("P1") + Text("PRODUCER") + Text("OPEN") + Text("I1") + Text("WATER_INJECTOR") +
           Text("SHUT"),
       TellStatuses, "P1PRODUCEROPEN;I1WATER_INJECTORSHUT;"},
      {"SetWellStatus", 11, Int(2) + Int(2) + Text("P1") + Text("P2") + Text("OPEN") + Text("SHUT"),
       "",
       [](C& c, auto&) {
         c.SetWellStatus({"P1", "P2"}, {"OPEN", "SHUT"});
       }},
      {"SetWellStatus", 11, Int(0) + Int(0), "", [](C& c, auto&) { c.SetWellStatus({}, {}); }},
      {"SetWellUptime", 12, Int(1) + Int(1) + Text("P1") + Double(0.75), "",
       [](C& c, auto&) { c.SetWellUptime({"P1"}, {0.75}); }},
      {"SetWellConstraints", 13,
       TextList({"P1", "P2"}) + Int(2) + TextList({"BHP", "LIQ"}) + TextList({"ANY"}) + Int(2) +
           DoubleList({(100.0 + 14.696) * kBar, 10.0 * kLiquid}) + DoubleList({5.0}),
       "", Constrain},
      {"GetEOSProperties", 14, "", EosReply(), TellProperties, "PENG_ROBINSON2 4087"},
      {"SetInjectionSource", 18, Text("I1") + Text("S1"), "\1",
       [](C& c, auto& out) { out << c.SetInjectionSource("I1", "S1"); }, "1"},
      {"SetWellInjectionComposition", 19, TextList({"S1"}) + Int(1) + DoubleList({0.25, 0.75}), "",
       [](C& c, auto&) {
         c.SetWellInjectionComposition({"S1"}, {{0.25, 0.75}});
       }},
  };
  return operations;
}

/// The bytes of an operation's request.
std::string RequestOf(const Operation& operation) {
  return operation.request.empty() ? BareRequest(operation.routine)
                                   : Message(operation.routine, operation.request);
}

TEST(RemoteConnector, SaysAndHearsEachRoutineToTheByteAndNamesItWhereItFails) {
  for (const Operation& operation : Operations()) {
    SCOPED_TRACE(operation.name);
    const std::string request = RequestOf(operation);
    const std::string& results = operation.results;
    Controller controller;
    controller.Exchange(request, Message(operation.routine, results + kAccepted))
        .Exchange(request, Message(operation.routine, results + kRefused))
        .Exchange(request, Message(operation.routine + 1, results + kAccepted))
        .Exchange(request, Int(0));
    const auto connector = controller.Connect();
    std::ostringstream outcome;
    operation.call(*connector, outcome);
    EXPECT_EQ(outcome.str(), operation.outcome);
    const auto failure = [&] { return FailureOf([&] { operation.call(*connector, outcome); }); };
    const std::string routine = FindRoutine(operation.routine)->name;
    EXPECT_EQ(failure(),
              "Unexpected acknowledgement from Intersect controller (Routine: " + routine + ").");
    for (const char* reply : {"of another routine", "of nothing"}) {
      EXPECT_EQ(failure(), "Communication error with remote Intersect controller (Routine: " +
                               routine + "). Check the log files under the case directory.")
          << reply;
    }
  }
}

std::string WellDataReply(double first) {
  std::string bytes = Text("OPEN");
  for (int i = 0; i < 8; ++i) bytes += Double(first + i);
  return Message(4096, bytes + kAccepted);
}

TEST(RemoteConnector, ReadsTheDataOfEachWellInTheOrderAskedFor) {
  Controller controller;
  controller.Exchange(Message(10, TextList({"A", "B", "C"})), Message(10, Int(2) + kAccepted));
  controller.Exchange(BareRequest(4096), WellDataReply(10.0));
  controller.Exchange(BareRequest(4096), WellDataReply(20.0));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(3);
  connector->GetWellData({"A", "B", "C"}, records);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].name, "A");
  EXPECT_EQ(records[0].status, "OPEN");
  const ConnectorWellRecord& a = records[0];
  EXPECT_EQ((Doubles{a.oilRate, a.gasRate, a.waterRate, a.waterInjectionRate, a.gasInjectionRate,
                     a.bottomHolePressure, a.tubingHeadPressure, a.uptimeFraction}),
            (Doubles{10.0 / kLiquid, 11.0 / kGas, 12.0 / kLiquid, 13.0 / kLiquid, 14.0 / kGas,
                     15.0 / kBar - 14.696, 16.0 / kBar - 14.696, 17.0}));
  EXPECT_EQ(records[1].name, "B");
  EXPECT_EQ(records[1].oilRate, 20.0 / kLiquid);
}

std::string InflowRequest(int32_t components) {
  return Message(16, Int(components) + TextList({"A", "B"}) + "\1" + Double(2.5));
}

std::string InflowReply(const std::string& compositions) {
  std::string bytes;
  for (int list = 0; list < 8; ++list) bytes += DoubleList({list + 1.0, list + 2.0});
  return Message(4097, bytes + compositions + kAccepted);
}

TEST(RemoteConnector, AddsTheInflowToTheRecordsOfTheirNames) {
  const std::string compositions = DoubleList({0.1, 0.9}) + DoubleList({0.2, 0.8});
  Controller controller;
  controller.Exchange(InflowRequest(2), Message(16, Int(2) + Int(2) + kAccepted));
  controller.Exchange(BareRequest(4097), InflowReply(compositions));
  controller.Exchange(BareRequest(4097), InflowReply(compositions));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "B";
  records[0].iprPressure = {42.0};
  records[1].name = "A";
  connector->GetWellIPRData(2, {"A", "B"}, records, true, 2.5);
  const ConnectorWellRecord& b = records[0];
  EXPECT_EQ(b.iprPressure, (Doubles{42.0, 1.0 / kBar - 14.696, 2.0 / kBar - 14.696}));
  EXPECT_EQ(b.iprOilRate, (Doubles{2.0 / kLiquid, 3.0 / kLiquid}));
  EXPECT_EQ(b.iprWaterRate, (Doubles{3.0 / kLiquid, 4.0 / kLiquid}));
  EXPECT_EQ(b.iprGasRate, (Doubles{4.0 / kGas, 5.0 / kGas}));
  EXPECT_EQ(b.iprTemperature, (Doubles{5.0 / 0.555555 + 32, 6.0 / 0.555555 + 32}));
  EXPECT_EQ(b.iprGasDensity, (Doubles{6.0 / 16.0185, 7.0 / 16.0185}));
  EXPECT_EQ(b.iprOilDensity, (Doubles{7.0 / 16.0185, 8.0 / 16.0185}));
  EXPECT_EQ(b.iprWaterDensity, (Doubles{8.0 / 16.0185, 9.0 / 16.0185}));
  EXPECT_EQ(RowsOf(b.iprComposition), (std::vector<Doubles>{{0.1, 0.9}, {0.2, 0.8}}));
  EXPECT_EQ(records[1].iprOilRate, b.iprOilRate);
}

TEST(RemoteConnector, ConvertsVariablesByTheirCodesAndComparesCounts) {
  const std::string request = Message(15, Text("A") + TextList({"X", "Y", "Z"}));
  Controller controller;
  controller.Exchange(request, Message(15, DoubleList({1.0, 2.0, 3.0})));
  controller.Exchange(request, Message(15, DoubleList({1.0, 2.0})));
  const auto connector = controller.Connect();
  Doubles values = {7.0};
  const std::vector<int32_t> codes = {kPressure, kNoUnit, kGasRate};
  connector->GetWellVariables("A", {"X", "Y", "Z"}, codes, values);
  EXPECT_EQ(values, (Doubles{7.0, 1.0 / kBar - 14.696, 2.0, 3.0 / kGas}));
  EXPECT_EQ(FailureOf([&] {
              connector->GetWellVariables("A", {"X", "Y", "Z"}, codes, values);
            }),
            "Communication error with remote Intersect controller (Routine: IX_GETWELLVAR). "
            "Results not consistent with input data.");
}

TEST(RemoteConnector, ReadsTheZeroedTailOfAReplyThatIsTooShort) {
  Controller controller;
  controller.Exchange(BareRequest(2), Message(2, std::string(500, '\1') + kAccepted));
  controller.Exchange(BareRequest(2), Message(2, Int(9)));
  const auto connector = controller.Connect();
  int32_t day = 0, month = 7, year = 7;
  FailureOf([&] { connector->GetDate(day, month, year); });
  connector->GetDate(day, month, year);
  EXPECT_EQ((std::array{day, month, year}), (std::array{9, 0, 0}));
}

/// Inflow of two wells, of which the first has a record.
void ReadInflow(C& connector, int32_t components) {
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "A";
  connector.GetWellIPRData(components, {"A", "B"}, records, true, 2.5);
}

TEST(RemoteConnector, TakesClaimsThatLieForACommunicationError) {
  struct Lie {
    uint32_t routine;
    std::string request;
    std::string results;
    std::function<void(C&)> call;
  };
  std::vector<ConnectorWellRecord> records;
  const auto statuses = [](C& c) {
    std::ostringstream ignored;
    TellStatuses(c, ignored);
  };
  const auto properties = [](C& c) {
    EOSProperties eos;
    c.GetEOSProperties(eos);
  };
  const std::vector<Lie> lies = {
      {6, Int(6), Int(2) + Text("P1") + Int(1048576), statuses},
      {6, Int(6), Int(0x7fffffff), statuses},
      {10, TextList({"A"}), Int(2) + kAccepted, [&](C& c) { c.GetWellData({"A"}, records); }},
      {14, Int(14), Int(-1), properties},
      {14, Int(14), Text("EOS") + Int(1048576), properties},
      {14, Int(14), Text("EOS") + TextList({}) + Int(131072), properties},
      {15, Text("A") + TextList({"X"}), Int(0x10000000),
       [](C& c) {
         Doubles values;
         c.GetWellVariables("A", {"X"}, {-1}, values);
       }},
      {16, Int(0) + TextList({"A", "B"}) + "\1" + Double(2.5), Int(3) + Int(10) + kAccepted,
       [](C& c) { ReadInflow(c, 0); }},
  };
  for (const Lie& lie : lies) {
    Controller controller;
    controller.Exchange(Message(lie.routine, lie.request), Message(lie.routine, lie.results));
    const auto connector = controller.Connect();
    EXPECT_EQ(FailureOf([&] { lie.call(*connector); }), CommunicationError(Routine{lie.routine}));
  }
}

TEST(RemoteConnector, RefusesInflowWithoutARecordOrOfMorePointsThanAReplyCanHold) {
  Controller controller;
  controller.Exchange(InflowRequest(0), Message(16, Int(2) + Int(2) + kAccepted))
      .Exchange(BareRequest(4097), InflowReply(""))
      .Exchange(BareRequest(4097), InflowReply(""))
      .Exchange(InflowRequest(2), Message(16, Int(2) + Int(0x7fffffff) + kAccepted))
      .Exchange(BareRequest(4097), InflowReply(DoubleList({1.0})));
  const auto connector = controller.Connect();
  EXPECT_EQ(FailureOf([&] { ReadInflow(*connector, 0); }),
            "Error in routine: IX_GETWELLIPRDATA_SUB). Unknown well returned.");
  EXPECT_EQ(FailureOf([&] { ReadInflow(*connector, 2); }),
            CommunicationError(Routine::kGetWellIPRDataOfOne));
}

TEST(RemoteConnector, WaitsForNothingOnceAReplyWasLongerThanItsBuffer) {
  Controller controller;
  controller.Exchange(BareRequest(4), Framed(Int(4) + std::string(1048572, '\0')))
      .Exchange(BareRequest(4), Int(1048577) + Int(100))
      .Exchange(BareRequest(7), "")
      .Exchange(BareRequest(65520), "");
  const auto connector = controller.Connect();
  EXPECT_EQ(connector->GetTimeDays(), 0.0);
  EXPECT_EQ(FailureOf([&] { connector->GetTimeDays(); }),
            CommunicationError(Routine::kGetTimeDays));
  EXPECT_EQ(FailureOf([&] { connector->AdvanceNewton(); }),
            CommunicationError(Routine::kAdvanceNewton));
  EXPECT_EQ(FailureOf([&] { connector->Shutdown(); }), CommunicationError(Routine::kShutdown));
}

TEST(RemoteConnector, NamesAndLimitsFollowTheVersionCode) {
  const std::vector<std::tuple<int32_t, double, std::string>> cases = {
      {20162, 2016.2, "2016.2 - 2017.1"},
      {20171, 2017.2, "2016.2 - 2017.1"},
      {20172, 2017.2, "2017.2->"},
      {100000, 2017.2, "2017.2->"},
  };
  for (const auto& [code, minimum, name] : cases) {
    Controller controller;
    const auto connector = controller.Connect(code);
    EXPECT_EQ(connector->GetMinimumSimulatorVersion(), minimum);
    EXPECT_EQ(connector->GetMaximumSimulatorVersion(), 10000.0);
    EXPECT_EQ(connector->GetConnectorVersionName(), name);
  }
}

TEST(RemoteConnector, TellsWhyASessionCannotBeEstablished) {
  const std::vector<std::pair<std::string, std::string>> replies = {
      {Message(1, kRefused), "Unexpected acknowledgement from Intersect controller"},
      {Message(2, kAccepted), CommunicationError(Routine::kConnectToSimulator)},
      {"", CommunicationError(Routine::kConnectToSimulator)},
  };
  for (const auto& [reply, text] : replies) {
    ScriptedPeer peer;
    peer.ExpectBytes(BareRequest(1)).ReplyBytes(reply).Start();
    const SocketClient socket("127.0.0.1", peer.Port());
    RemoteSessionData data;
    data.Socket = &socket;
    try {
      CreateRemoteConnector(data);
      FAIL() << "a connector was made";
    } catch (const std::exception& failure) {
      EXPECT_EQ(failure.what(), text);
    }
  }
}

}  // namespace
}  // namespace gantry::test
