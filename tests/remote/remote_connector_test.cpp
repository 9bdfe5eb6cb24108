#include "remote/remote_connector.h"

#include <array>
#include <functional>
#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

#include "remote/routine_table.h"
#include "remote/socket.h"
#include "remote/wire_bytes.h"
#include "support/raised.h"
#include "support/row_tables.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

using C = CExtConnectorBase;

/// A controller of a simulator in field units that plays its script once a session stands.
class Controller {
 public:
  Controller() {
    Exchange(BareRequest(1), Message(1, kAccepted));
    Exchange(BareRequest(17), Message(17, Double(2017.2) + kAccepted));
    Exchange(BareRequest(3), Message(3, Int(0) + kAccepted));
  }

  Controller& Exchange(const std::string& request, const std::string& reply) {
    peer_.ExpectBytes(request).ReplyBytes(reply);
    return *this;
  }

  std::unique_ptr<C> Connect(int32_t versionCode = kMostRecentVersion) {
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

/// What an operation says and hears; where it gives results, these as one text.
struct Operation {
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
  out << eos.eosName << eos.componentCount << eos.componentNames.at(1) << ' '
      << eos.presentProperties;
  for (const Doubles& list :
       {eos.molecularWeight, eos.criticalTemperature, eos.criticalPressure, eos.criticalVolume,
        eos.acentricFactor, eos.extraProperty, eos.boilingPoint, eos.volumeShift, eos.omegaA,
        eos.omegaB, eos.parachor, eos.binaryInteraction}) {
    out << ' ';
    for (const double value : list) out << value;
  }
}

void Constrain(C& connector, std::ostream&) {
  connector.SetWellConstraints({"P1", "P2"}, {{"BHP", "LIQ"}, {"ANY"}}, {{100.0, 10.0}, {5.0}},
                               {{kPressure, kLiquidRate}, {kNoUnit}});
}

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      {7, "", "", [](C& c, auto&) { c.AdvanceNewton(); }},
      {65520, "", "", [](C& c, auto&) { c.Shutdown(); }},
      {8, Double(100.0), "", [](C& c, auto&) { c.RunUntil(100.0); }},
      {17, "", Double(2018.5), [](C& c, auto& out) { out << c.GetVersion(); }, "2018.5"},
      {4, "", Double(30.25), [](C& c, auto& out) { out << c.GetTimeDays(); }, "30.25"},
      {5, "", Int(2), [](C& c, auto& out) { out << c.GetCompositionalFlag(); }, "1"},
      {9, "", Int(-1), [](C& c, auto& out) { out << c.GetTerminationFlag(); }, "0"},
      {2, "", Int(31) + Int(12) + Int(2026), [](C& c, auto& out) { TellDate(out, c, &C::GetDate); },
       "31.12.2026"},
      {20, "", Int(1) + Int(2) + Int(2020),
       [](C& c, auto& out) { TellDate(out, c, &C::GetStartDate); }, "1.2.2020"},
      {6, "",
       Int(2) + Text("P1") + Text("PRODUCER") + Text("OPEN") + Text("I1") + Text("WATER_INJECTOR") +
           Text("SHUT"),
       TellStatuses, "P1PRODUCEROPEN;I1WATER_INJECTORSHUT;"},
      {11, Int(2) + Int(2) + Text("P1") + Text("P2") + Text("OPEN") + Text("SHUT"), "",
       [](C& c, auto&) {
         c.SetWellStatus({"P1", "P2"}, {"OPEN", "SHUT"});
       }},
      {11, Int(0) + Int(0), "", [](C& c, auto&) { c.SetWellStatus({}, {}); }},
      {12, Int(1) + Int(1) + Text("P1") + Double(0.75), "",
       [](C& c, auto&) { c.SetWellUptime({"P1"}, {0.75}); }},
      {13,
       TextList({"P1", "P2"}) + Int(2) + TextList({"BHP", "LIQ"}) + TextList({"ANY"}) + Int(2) +
           DoubleList({100.0 + 14.696, 10.0}) + DoubleList({5.0}),
       "", Constrain},
      {14, "", EosReply(), TellProperties,
       "PENG_ROBINSON2C2 4087 0.5 1.5 -12.196 3.5  5.5 6.5 7.5 8.5 9.5 10.5 11.5"},
      {18, Text("I1") + Text("S1"), "\1",
       [](C& c, auto& out) { out << c.SetInjectionSource("I1", "S1"); }, "1"},
      {19, TextList({"S1"}) + Int(1) + DoubleList({0.25, 0.75}), "",
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

const std::string kBroken =
    "runtime_error: Communication error with remote Intersect controller (Routine: ";

/// The failure of a routine whose reply can't be its own.
std::string Broken(Routine routine) { return "runtime_error: " + CommunicationError(routine); }

TEST(RemoteConnector, SaysAndHearsEachRoutineToTheByteAndNamesItWhereItFails) {
  for (const Operation& operation : Operations()) {
    SCOPED_TRACE(operation.routine);
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
    const auto failure = [&] { return Raised([&] { operation.call(*connector, outcome); }); };
    const std::string routine = FindRoutine(operation.routine)->name;
    EXPECT_EQ(failure(),
              "runtime_error: Unexpected acknowledgement from Intersect controller (Routine: " +
                  routine + ").");
    for (const char* reply : {"of another routine", "of nothing"}) {
      EXPECT_EQ(failure(), kBroken + routine + "). Check the log files under the case directory.")
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
  controller.Exchange(Message(10, TextList({"A", "B", "C"})), Message(10, Int(2) + kAccepted))
      .Exchange(BareRequest(4096), WellDataReply(20.0))
      .Exchange(BareRequest(4096), WellDataReply(30.0));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(3);
  connector->GetWellData({"A", "B", "C"}, records);
  ASSERT_EQ(records.size(), 2u);
  const ConnectorWellRecord& b = records[1];
  EXPECT_EQ(records[0].name + b.name + b.status, "ABOPEN");
  EXPECT_EQ((Doubles{b.oilRate, b.gasRate, b.waterRate, b.waterInjectionRate, b.gasInjectionRate,
                     b.bottomHolePressure, b.tubingHeadPressure, b.uptimeFraction}),
            (Doubles{30.0, 31.0 / 1000.0, 32.0, 33.0, 34.0 / 1000.0, 35.0 - 14.696, 36.0 - 14.696,
                     37.0}));
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
  controller.Exchange(InflowRequest(2), Message(16, Int(2) + Int(2) + kAccepted))
      .Exchange(BareRequest(4097), InflowReply(""))
      .Exchange(BareRequest(4097), InflowReply(compositions));
  const auto connector = controller.Connect();
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "B";
  records[0].iprPressure = {42.0};
  records[1].name = "A";
  connector->GetWellIPRData(2, {"A", "B"}, records, true, 2.5);
  const ConnectorWellRecord& b = records[0];
  EXPECT_EQ(b.iprPressure, (Doubles{42.0, 1.0 - 14.696, 2.0 - 14.696}));
  EXPECT_EQ((Doubles{b.iprOilRate[1], b.iprWaterRate[1], b.iprGasRate[1], b.iprTemperature[1],
                     b.iprGasDensity[1], b.iprOilDensity[1], b.iprWaterDensity[1]}),
            (Doubles{3.0, 4.0, 5.0 / 1000.0, 6.0, 7.0, 8.0, 9.0}));
  EXPECT_EQ(RowsOf(b.iprComposition), (std::vector<Doubles>{{0.1, 0.9}, {0.2, 0.8}}));
  EXPECT_EQ(records[1].iprOilRate, b.iprOilRate);
}

TEST(RemoteConnector, ConvertsVariablesByTheirCodesAndComparesCounts) {
  const std::string request = Message(15, Text("A") + TextList({"X", "Y", "Z"}));
  Controller controller;
  controller.Exchange(request, Message(15, DoubleList({1.0, 2.0, 3.0})))
      .Exchange(request, Message(15, DoubleList({1.0, 2.0})));
  const auto connector = controller.Connect();
  Doubles values = {7.0};
  const auto read = [&] {
    connector->GetWellVariables("A", {"X", "Y", "Z"}, {kPressure, kNoUnit, kGasRate}, values);
  };
  read();
  EXPECT_EQ(values, (Doubles{7.0, 1.0 - 14.696, 2.0, 3.0 / 1000.0}));
  EXPECT_EQ(Raised(read), kBroken + "IX_GETWELLVAR). Results not consistent with input data.");
}

TEST(RemoteConnector, ReadsTheZeroedTailOfAReplyThatIsTooShort) {
  Controller controller;
  controller.Exchange(BareRequest(2), Message(2, std::string(500, '\1') + kAccepted));
  controller.Exchange(BareRequest(2), Message(2, Int(9)));
  const auto connector = controller.Connect();
  int32_t day = 0, month = 7, year = 7;
  EXPECT_NE(Raised([&] { connector->GetDate(day, month, year); }), "nothing raised");
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
  std::ostringstream ignored;
  std::vector<ConnectorWellRecord> records;
  Doubles values;
  const auto statuses = [&](C& c) { TellStatuses(c, ignored); };
  const auto properties = [&](C& c) { TellProperties(c, ignored); };
  const auto data = [&](C& c) { c.GetWellData({"A"}, records); };
  const auto variables = [&](C& c) { c.GetWellVariables("A", {"X"}, {-1}, values); };
  const auto inflow = [&](C& c) { ReadInflow(c, 2); };
  struct Lie {
    uint32_t routine;
    std::string request;
    std::string results;
    std::function<void(C&)> call;
  };
  const std::vector<Lie> lies = {
      {6, Int(6), Int(2) + Text("P1") + Int(1048576), statuses},
      {6, Int(6), Int(0x7fffffff), statuses},
      {10, TextList({"A"}), Int(2) + kAccepted, data},
      {14, Int(14), Int(-1), properties},
      {14, Int(14), Text("EOS") + Int(1048576), properties},
      {14, Int(14), Text("EOS") + TextList({}) + Int(131072), properties},
      {15, Text("A") + TextList({"X"}), Int(0x10000000), variables},
      {16, Int(2) + TextList({"A", "B"}) + "\1" + Double(2.5), Int(3) + Int(10) + kAccepted,
       inflow},
  };
  for (const Lie& lie : lies) {
    Controller controller;
    controller.Exchange(Message(lie.routine, lie.request), Message(lie.routine, lie.results));
    const auto connector = controller.Connect();
    EXPECT_EQ(Raised([&] { lie.call(*connector); }), Broken(Routine{lie.routine}));
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
  EXPECT_EQ(Raised([&] { ReadInflow(*connector, 0); }),
            "runtime_error: Error in routine: IX_GETWELLIPRDATA_SUB). Unknown well returned.");
  EXPECT_EQ(Raised([&] { ReadInflow(*connector, 2); }), Broken(Routine::kGetWellIPRDataOfOne));
}

TEST(RemoteConnector, WaitsForNothingOnceAReplyWasLongerThanItsBuffer) {
  Controller controller;
  controller.Exchange(BareRequest(4), Framed(Int(4) + std::string(1048572, '\0')))
      .Exchange(BareRequest(4), Int(1048577) + Int(100))
      .Exchange(BareRequest(7), "")
      .Exchange(BareRequest(65520), "");
  const auto connector = controller.Connect();
  EXPECT_EQ(connector->GetTimeDays(), 0.0);
  EXPECT_EQ(Raised([&] { connector->GetTimeDays(); }), Broken(Routine::kGetTimeDays));
  EXPECT_EQ(Raised([&] { connector->AdvanceNewton(); }), Broken(Routine::kAdvanceNewton));
  EXPECT_EQ(Raised([&] { connector->Shutdown(); }), Broken(Routine::kShutdown));
}

TEST(RemoteConnector, NamesAndLimitsFollowTheVersionCode) {
  const std::tuple<int32_t, double, std::string> codes[] = {{20162, 2016.2, "2016.2 - 2017.1"},
                                                            {20171, 2017.2, "2016.2 - 2017.1"},
                                                            {20172, 2017.2, "2017.2->"}};
  for (const auto& [code, minimum, name] : codes) {
    Controller controller;
    const auto connector = controller.Connect(code);
    EXPECT_EQ(connector->GetMinimumSimulatorVersion(), minimum);
    EXPECT_EQ(connector->GetConnectorVersionName(), name);
  }
}

}  // namespace
}  // namespace gantry::test
