#include "remote/remote_connector.h"

#include <functional>
#include <map>
#include <tuple>

#include <gtest/gtest.h>

#include "remote/routine_table.h"
#include "remote/socket.h"
#include "remote/wire_bytes.h"
#include "support/row_tables.h"
#include "support/scripted_peer.h"

namespace gantry {
namespace {

using test::BareRequest;
using test::Double;
using test::DoubleList;
using test::Int;
using test::kAccepted;
using test::kRefused;
using test::Message;
using test::RowsOf;
using test::ScriptedPeer;
using test::Text;
using test::TextList;

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

/// What an operation says and hears, as one text for comparison where it gives results.
struct Operation {
  const char* name;
  uint32_t routine;
  std::string request;
  std::string results;  ///< in front of the acknowledgement
  std::function<std::string(CExtConnectorBase&)> call;
  std::string outcome;
};

std::string DateText(int32_t day, int32_t month, int32_t year) {
  return std::to_string(day) + "." + std::to_string(month) + "." + std::to_string(year);
}

std::string EosReply() {
  std::string bytes = Text("PENG_ROBINSON") + TextList({"C1", "C2"});
  for (int list = 0; list < 12; ++list) {
    bytes += list == 4 ? DoubleList({}) : DoubleList({list + 0.5});
  }
  return bytes;
}

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      {"AdvanceNewton", 7, "", "",
       [](auto& c) {
         c.AdvanceNewton();
         return "";
       },
       ""},
      {"Shutdown", 65520, "", "",
       [](auto& c) {
         c.Shutdown();
         return "";
       },
       ""},
      {"RunUntil", 8, Double(100.0), "",
       [](auto& c) {
         c.RunUntil(100.0);
         return "";
       },
       ""},
      {"GetVersion", 17, "", Double(2018.5), [](auto& c) { return std::to_string(c.GetVersion()); },
       "2018.500000"},
      {"GetTimeDays", 4, "", Double(30.25), [](auto& c) { return std::to_string(c.GetTimeDays()); },
       "30.250000"},
      {"GetCompositionalFlag", 5, "", Int(2),
       [](auto& c) { return c.GetCompositionalFlag() ? "true" : "false"; }, "true"},
      {"GetTerminationFlag", 9, "", Int(-1),
       [](auto& c) { return c.GetTerminationFlag() ? "true" : "false"; }, "false"},
      {"GetDate", 2, "", Int(31) + Int(12) + Int(2026),
       [](auto& c) {
         int32_t day = 0, month = 0, year = 0;
         c.GetDate(day, month, year);
         return DateText(day, month, year);
       },
       "31.12.2026"},
      {"GetStartDate", 20, "", Int(1) + Int(2) + Int(2020),
       [](auto& c) {
         int32_t day = 0, month = 0, year = 0;
         c.GetStartDate(day, month, year);
         return DateText(day, month, year);
       },
       "1.2.2020"},
      {"GetWellStatus", 6, "",
       Int(2) + Text("P1") + Text("PRODUCER") + Text("OPEN") + Text("I1") + Text("WATER_INJECTOR") +
           Text("SHUT"),
       [](auto& c) {
         std::vector<ConnectorWellStatus> statuses(1);
         c.GetWellStatus(statuses);
         std::string text;
         for (const auto& well : statuses) text += well.name + well.type + well.status + ";";
         return text;
       },
       "P1PRODUCEROPEN;I1WATER_INJECTORSHUT;"},
      {"SetWellStatus", 11,
       Int(2) + Int(2) + Text("P1") + Text("P2") + Text("OPEN") + Text("SURFACE_SHUTIN"), "",
       [](auto& c) {
         c.SetWellStatus({"P1", "P2"}, {"OPEN", "SURFACE_SHUTIN"});
         return "";
       },
       ""},
      {"SetWellStatus", 11, Int(0) + Int(0), "",
       [](auto& c) {
         c.SetWellStatus({}, {});
         return "";
       },
       ""},
      {"SetWellUptime", 12, Int(1) + Int(1) + Text("P1") + Double(0.75), "",
       [](auto& c) {
         c.SetWellUptime({"P1"}, {0.75});
         return "";
       },
       ""},
      {"SetWellConstraints", 13,
       TextList({"P1", "P2"}) + Int(2) + TextList({"BHP", "LIQ"}) + TextList({"ANY"}) + Int(2) +
           DoubleList({(100.0 + 14.696) * kBar, 10.0 * kLiquid}) + DoubleList({5.0}),
       "",
       [](auto& c) {
         c.SetWellConstraints({"P1", "P2"}, {{"BHP", "LIQ"}, {"ANY"}}, {{100.0, 10.0}, {5.0}},
                              {{kPressure, kLiquidRate}, {kNoUnit}});
         return "";
       },
       ""},
      {"GetEOSProperties", 14, "", EosReply(),
       [](auto& c) {
         EOSProperties eos;
         eos.omegaA = {9.0};
         c.GetEOSProperties(eos);
         const UnitConverter units(true);
         EXPECT_EQ(eos.eosName, "PENG_ROBINSON");
         EXPECT_EQ(eos.componentNames, (Strings{"C1", "C2"}));
         EXPECT_EQ(eos.componentCount, 2);
         EXPECT_EQ(eos.presentProperties, 4095u - EOSProperties::kAcentricFactor);
         EXPECT_EQ(eos.molecularWeight, Doubles{0.5});
         EXPECT_EQ(eos.criticalTemperature, Doubles{units.FromSimulator(1.5, kTemperature)});
         EXPECT_EQ(eos.criticalPressure, Doubles{units.FromSimulator(2.5, kPressure)});
         EXPECT_EQ(eos.criticalVolume, Doubles{units.FromSimulator(3.5, kCriticalVolume)});
         EXPECT_EQ(eos.extraProperty, Doubles{5.5});
         EXPECT_EQ(eos.boilingPoint, Doubles{units.FromSimulator(6.5, kTemperature)});
         EXPECT_EQ(eos.omegaA, Doubles{8.5});
         EXPECT_EQ(eos.binaryInteraction, Doubles{11.5});
         return "";
       },
       ""},
      {"SetInjectionSource", 18, Text("I1") + Text("Source_I1"), "\1",
       [](auto& c) { return c.SetInjectionSource("I1", "Source_I1") ? "true" : "false"; }, "true"},
      {"SetWellInjectionComposition", 19, TextList({"S1"}) + Int(1) + DoubleList({0.25, 0.75}), "",
       [](auto& c) {
         c.SetWellInjectionComposition({"S1"}, {{0.25, 0.75}});
         return "";
       },
       ""},
  };
  return operations;
}

/// The bytes of an operation's request.
std::string RequestOf(const Operation& operation) {
  return operation.request.empty() ? BareRequest(operation.routine)
                                   : Message(operation.routine, operation.request);
}

TEST(RemoteConnector, SaysAndHearsEachRoutineToTheByte) {
  for (const Operation& operation : Operations()) {
    SCOPED_TRACE(operation.name);
    Controller controller;
    controller.Exchange(RequestOf(operation),
                        Message(operation.routine, operation.results + kAccepted));
    const auto connector = controller.Connect();
    EXPECT_EQ(operation.call(*connector), operation.outcome);
  }
}

TEST(RemoteConnector, NamesTheRoutineThatWasRefusedOrAnsweredByAnother) {
  for (const Operation& operation : Operations()) {
    SCOPED_TRACE(operation.name);
    Controller controller;
    controller.Exchange(RequestOf(operation),
                        Message(operation.routine, operation.results + kRefused));
    controller.Exchange(RequestOf(operation),
                        Message(operation.routine + 1, operation.results + kAccepted));
    controller.Exchange(RequestOf(operation), Int(0));
    const auto connector = controller.Connect();
    const std::string routine = FindRoutine(operation.routine)->name;
    EXPECT_EQ(FailureOf([&] { operation.call(*connector); }),
              "Unexpected acknowledgement from Intersect controller (Routine: " + routine + ").");
    for (int reply = 0; reply < 2; ++reply) {
      EXPECT_EQ(FailureOf([&] { operation.call(*connector); }),
                "Communication error with remote Intersect controller (Routine: " + routine +
                    "). Check the log files under the case directory.");
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
  EXPECT_EQ(records[0].oilRate, 10.0 / kLiquid);
  EXPECT_EQ(records[0].gasRate, 11.0 / kGas);
  EXPECT_EQ(records[0].waterRate, 12.0 / kLiquid);
  EXPECT_EQ(records[0].waterInjectionRate, 13.0 / kLiquid);
  EXPECT_EQ(records[0].gasInjectionRate, 14.0 / kGas);
  EXPECT_EQ(records[0].bottomHolePressure, 15.0 / kBar - 14.696);
  EXPECT_EQ(records[0].tubingHeadPressure, 16.0 / kBar - 14.696);
  EXPECT_EQ(records[0].uptimeFraction, 17.0);
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

TEST(RemoteConnector, RefusesInflowOfAWellWithoutARecord) {
  Controller controller;
  controller.Exchange(InflowRequest(0), Message(16, Int(1) + Int(2) + kAccepted));
  controller.Exchange(BareRequest(4097), InflowReply(""));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(1);
  EXPECT_EQ(FailureOf([&] {
              connector->GetWellIPRData(0, {"A", "B"}, records, true, 2.5);
            }),
            "Error in routine: IX_GETWELLIPRDATA_SUB). Unknown well returned.");
}

TEST(RemoteConnector, AsksNothingForNoWells) {
  Controller controller;
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(1);
  connector->GetWellDataAndIPR(2, {}, records, true, 2.5);
  connector->PollWellStatuses();
  connector->PollWellConstraints();
  EXPECT_EQ(records.size(), 1u);
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
  EXPECT_EQ(DateText(day, month, year), "9.0.0");
}

TEST(RemoteConnector, TakesClaimsThatLieForACommunicationError) {
  const std::vector<std::pair<uint32_t, std::string>> replies = {
      {6, Int(2) + Text("P1") + Int(1048576)},
      {6, Int(0x7fffffff)},
      {10, Int(4) + kAccepted},
      {14, Int(-1)},
      {14, Text("EOS") + Int(1048576)},
      {14, Text("EOS") + TextList({}) + Int(131072)},
      {15, Int(0x10000000)},
      {16, Int(4) + Int(10) + kAccepted},
  };
  for (const auto& [routine, results] : replies) {
    SCOPED_TRACE(FindRoutine(routine)->name);
    Controller controller;
    const std::map<uint32_t, std::string> requests = {
        {6, BareRequest(6)},
        {10, Message(10, TextList({"A", "B", "C"}))},
        {14, BareRequest(14)},
        {15, Message(15, Text("A") + TextList({"X"}))},
        {16, Message(16, Int(0) + TextList({"A", "B", "C"}) + std::string(1, '\0') + Double(1.0))},
    };
    controller.Exchange(requests.at(routine), Message(routine, results));
    const auto connector = controller.Connect();
    std::vector<ConnectorWellRecord> records;
    std::vector<ConnectorWellStatus> statuses;
    EOSProperties eos;
    Doubles values;
    const std::map<uint32_t, std::function<void()>> calls = {
        {6, [&] { connector->GetWellStatus(statuses); }},
        {10,
         [&] {
           connector->GetWellData({"A", "B", "C"}, records);
         }},
        {14, [&] { connector->GetEOSProperties(eos); }},
        {15, [&] { connector->GetWellVariables("A", {"X"}, {-1}, values); }},
        {16,
         [&] {
           connector->GetWellIPRData(0, {"A", "B", "C"}, records, false, 1.0);
         }},
    };
    EXPECT_EQ(FailureOf(calls.at(routine)), CommunicationError(Routine{routine}));
  }
}

TEST(RemoteConnector, RefusesMorePointsThanAReplyCanHold) {
  Controller controller;
  controller.Exchange(InflowRequest(2), Message(16, Int(2) + Int(0x7fffffff) + kAccepted));
  controller.Exchange(BareRequest(4097), InflowReply(DoubleList({1.0})));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "A";
  EXPECT_EQ(FailureOf([&] {
              connector->GetWellIPRData(2, {"A", "B"}, records, true, 2.5);
            }),
            CommunicationError(Routine::kGetWellIPRDataOfOne));
}

TEST(RemoteConnector, RefusesAReplyLongerThanItsBuffer) {
  Controller controller;
  controller.Exchange(BareRequest(4), test::Framed(Int(4) + std::string(1048572, '\0')));
  controller.Exchange(BareRequest(4), Int(1048577));
  const auto connector = controller.Connect();
  EXPECT_EQ(connector->GetTimeDays(), 0.0);
  EXPECT_EQ(FailureOf([&] { connector->GetTimeDays(); }),
            CommunicationError(Routine::kGetTimeDays));
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

TEST(RemoteConnector, ShutsDownASimulatorOfTheWrongAge) {
  ScriptedPeer peer;
  peer.ExpectBytes(BareRequest(1)).ReplyBytes(Message(1, kAccepted));
  peer.ExpectBytes(BareRequest(17)).ReplyBytes(Message(17, Double(2016.2) + kAccepted));
  peer.ExpectBytes(BareRequest(65520)).ReplyBytes(Message(65520, kAccepted)).Start();
  const SocketClient socket("127.0.0.1", peer.Port());
  RemoteSessionData data;
  data.VersionCode = kVersion2017_2;
  data.Socket = &socket;
  EXPECT_THROW(CreateRemoteConnector(data), ConnectorError);
}

}  // namespace
}  // namespace gantry
