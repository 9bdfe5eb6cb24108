#include "client/v2016_2/intersect_client.h"

#include <functional>

#include <gtest/gtest.h>

#include "client/v2017_2/intersect_client.h"
#include "support/raised.h"
#include "support/scripted_peer.h"

namespace gantry {
namespace {

using test::Entries;
using test::Frame;
using test::Ints;
using test::Marker;
using test::Numbers;
using test::Raised;
using test::ScriptedPeer;
using test::Step;
using test::Texts;

constexpr uint32_t kTimeout = 5;

/// A client that has been greeted, and what it then met.
template <class Client>
struct Session {
  explicit Session(ScriptedPeer& peer) {
    peer.Start();
    client.connect("localhost", peer.Port(), kTimeout);
  }

  Client* operator->() { return &client; }

  Client client;
};
using Session2016 = Session<v2016_2::IntersectClient>;
using Session2017 = Session<v2017_2::IntersectClient>;

TEST(ClientSession, FollowsThePositionsThatTheSimulatorReports) {
  ScriptedPeer peer;
  peer.Greet()
      .Expect({"CONTINUE", "END"})
      .Reply(Step("BEGIN_NEWTON"))
      .Expect({"CONTINUE_UNTIL", {"TIME", Numbers{31.5}}, "END"})
      .Reply(Step("BEGIN_NEWTON", 31.5))
      .Expect({"SHUTDOWN", "END"})
      .Reply({"FINISHED", "END"});
  Session2016 client(peer);
  EXPECT_EQ(client->position(), AlgorithmicPosition::MODEL_DEFINITION);
  client->continue_simulation();
  EXPECT_EQ(client->position(), AlgorithmicPosition::BEGIN_NEWTON);
  client->continue_simulation_until(31.5);
  EXPECT_EQ(client->time(), 31.5);
  EXPECT_EQ(client->date(), (std::array<int32_t, 6>{2020, 1, 1, 0, 0, 0}));
  EXPECT_EQ(Raised([&] { client->connect("localhost", peer.Port(), kTimeout); }),
            "invalid_argument: Already connected to INTERSECT.");
  client->shutdown();
  EXPECT_EQ(client->position(), AlgorithmicPosition::END_SIMULATE);
  EXPECT_EQ(client->time(), 31.5) << "FINISHED carries no time";
}

TEST(ClientSession, TriesAgainAfterTheSimulatorRefusedTheSetup) {
  ScriptedPeer peer;
  peer.ExpectAnyMessage()
      .Reply({"STARTED", {"ERRORS", Texts{"no licence", "and more"}}, "END"})
      .Reconnect()
      .Greet()
      .Start();
  v2017_2::IntersectClient client;
  EXPECT_EQ(Raised([&] { client.connect("localhost", peer.Port(), kTimeout); }),
            "invalid_argument: no licence");
  EXPECT_EQ(client.position(), AlgorithmicPosition::UNCONNECTED);
  client.connect("localhost", peer.Port(), kTimeout);
  EXPECT_EQ(client.position(), AlgorithmicPosition::MODEL_DEFINITION);
}

TEST(ClientSession, NamesThePositionsOfItsTableOnly) {
  EXPECT_EQ(position_name(AlgorithmicPosition::STARTING), "STARTING");
  EXPECT_EQ(Raised([] { position_name(static_cast<AlgorithmicPosition>(5)); }),
            "invalid_argument: Incorrect algorithmic position");
}

struct BadAnswer {
  const char* what;
  std::string bytes;
  const char* failure;
};

/// Answers to "CONTINUE" that break the protocol.
class BadPositions : public testing::TestWithParam<BadAnswer> {};

TEST_P(BadPositions, AreRefusedAndEndTheSession) {
  ScriptedPeer peer;
  peer.Greet().ExpectAnyMessage().ReplyBytes(GetParam().bytes);
  Session2016 client(peer);
  EXPECT_EQ(Raised([&] { client->continue_simulation(); }), GetParam().failure);
}

const Entries kStepOfFiveDates = {"STEP",
                                  {"POSITION", Texts{"BEGIN_NEWTON"}},
                                  {"TIME", Numbers{0.0}},
                                  {"DATE", Ints{2020, 1, 1, 0, 0}},
                                  "END"};

INSTANTIATE_TEST_SUITE_P(
    Client, BadPositions,
    testing::Values(
        BadAnswer{"UnknownPosition", Frame(Step("STARTING")),
                  "invalid_argument: Incorrect algorithmic position received (STARTING)"},
        BadAnswer{"OtherMessage", Frame({"READY", "END"}),
                  "invalid_argument: Incorrect header received (READY)"},
        BadAnswer{"StepWithACount", Frame({{"STEP", Marker{1}}, "END"}),
                  "length_error: Incorrect header (received: STEP-1-MESS vs expected: "
                  "STEP-0-MESS)"},
        BadAnswer{"ShortDate", Frame(kStepOfFiveDates),
                  "length_error: Incorrect header (received: DATE-5-INTE vs expected: "
                  "DATE-6-INTE)"},
        BadAnswer{"Empty", test::Word(0) + test::Word(0),
                  "length_error: Not enough data read from network"},
        BadAnswer{"Garbage", std::string(64, 'G'), "exception: read: End of file"},
        BadAnswer{"Nothing", "", "exception: read: End of file"}),
    [](const auto& test) { return std::string(test.param.what); });

TEST(ClientQueries, ReadWellsWithTheItemsThatTheReplyNames) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer({"QUERY", "QWELLS", {"QITEMS", Texts{"A", "B"}}, {"WELNAMES", Texts{"*"}}, "END"},
              {"REPLY",
               {"QITEMS", Texts{"B"}},
               {"WELLNAME", Texts{"P1"}},
               {"VALUES", Numbers{1.5}},
               {"WELLNAME", Texts{"P2"}},
               {"VALUES", Numbers{2.5}},
               "END"})
      .Answer({"QUERY", "QWELLS_STR", {"QITEMS", Texts{"TYPE"}}, {"WELNAMES", Texts{"P1"}}, "END"},
              {"REPLY",
               {"QITEMS", Texts{"TYPE"}},
               {"WELLNAME", Texts{"P1"}},
               {"VALUES", Texts{"PRODUCER"}},
               "END"})
      .Answer({"QUERY", "QWELLS", {"QITEMS", Texts{}}, {"WELNAMES", Texts{}}, "END"},
              {"REPLY", "END"});
  Session2016 client(peer);
  WellQueryResult numbers = client->query_wells({"*"}, {"A", "B"});
  EXPECT_EQ(numbers.items, Strings{"B"});
  EXPECT_EQ(numbers.wells, (Strings{"P1", "P2"}));
  EXPECT_EQ(numbers.values[1].front(), 2.5);
  EXPECT_EQ(client->query_wells_as_strings({"P1"}, {"TYPE"}).values[0].front(), "PRODUCER");
  EncodedMessage query;
  client->encode_well_query({}, {}, query);
  client->query_wells(query, numbers);
  EXPECT_TRUE(numbers.wells.empty());
  EXPECT_TRUE(numbers.items.empty());
  EXPECT_EQ(numbers.values.RowCount(), 0u);
}

TEST(ClientQueries, ReadTheReservoir) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer({"QUERY", "QRESVR", {"QITEMS", Texts{"START_DATE"}}, "END"},
              {"REPLY", {"QITEM", Texts{"START_DATE"}}, {"VALUES", Ints{2020, 1}}, "END"})
      .Answer({"QUERY", "QRESVR_STR", {"QITEMS", Texts{"A", "B"}}, "END"},
              {"REPLY",
               {"QITEM", Texts{"A"}},
               {"VALUES", Texts{}},
               {"QITEM", Texts{"B"}},
               {"VALUES", Texts{"x", "y"}},
               "END"});
  Session2016 client(peer);
  const ReservoirQueryResult numbers = client->query_reservoir({"START_DATE"});
  EXPECT_EQ(numbers.values[0][1], 1);
  const ReservoirQueryStringResult texts = client->query_reservoir_as_strings({"A", "B"});
  EXPECT_TRUE(texts.values[0].empty());
  EXPECT_EQ(texts.values[1][1], "y");
}

TEST(ClientQueries, ReadConstraintsOfWells) {
  ScriptedPeer peer;
  peer.Greet().Answer({"QUERY", "QWCONSTRAINTS", {"WELNAMES", Texts{"*"}}, "END"},
                      {"REPLY",
                       {"WELLNAME", Texts{"P1"}},
                       {"ITEMS", Texts{"A", "B"}},
                       {"VALUES", Numbers{1, 2}},
                       {"SETTERS", Texts{"USER", "DECK"}},
                       "END"});
  Session2016 client(peer);
  const WellConstraintsResult result = client->get_constraints_for_wells({"*"});
  EXPECT_EQ(result.wells, Strings{"P1"});
  EXPECT_EQ(result.items[0], (Strings{"A", "B"}));
  EXPECT_EQ(result.values[0], (Doubles{1, 2}));
  EXPECT_EQ(result.setters[0], (Strings{"USER", "DECK"}));
}

TEST(ClientQueries, ReadInflowOfWells) {
  ScriptedPeer peer;
  peer.Greet().Answer({"QUERY",
                       "QIPRDATA",
                       {"WELNAMES", Texts{"P1", "P2"}},
                       {"PRESSURETYPES", Texts{"BHP", "THP"}},
                       {"NPOINTS", Ints{2}},
                       {"SKEWNESS", Numbers{2.5}},
                       "END"},
                      {"REPLY",
                       {"WELLNAME", Texts{"P1"}},
                       {"NPOINTS", Ints{2}},
                       {"ITEM", Texts{"OIL"}},
                       {"VALUES", Numbers{1, 2}},
                       {"ITEM", Texts{"GAS"}},
                       {"VALUES", Numbers{3, 4}},
                       {"WELLNAME", Texts{"P2"}},
                       {"NPOINTS", Ints{0}},
                       "END"});
  Session2016 client(peer);
  const IPRQueryResult result =
      client->get_ipr_data_for_wells({"P1", "P2"}, {"BHP", "THP"}, 2, 2.5);
  EXPECT_EQ(result.wells, (Strings{"P1", "P2"}));
  EXPECT_EQ(result.items[0], (Strings{"OIL", "GAS"}));
  EXPECT_EQ(result.values[0][1], (Doubles{3, 4}));
  EXPECT_TRUE(result.items[1].empty());
  EXPECT_TRUE(client->get_ipr_data_for_wells({"P1"}, {"BHP"}, 0, 1).wells.empty()) << "unasked";
  EXPECT_TRUE(client->get_ipr_data_for_wells({}, {}, 5, 1).wells.empty()) << "unasked";
}

TEST(ClientQueries, ReadEveryFluidModel) {
  ScriptedPeer peer;
  peer.Greet().Answer({"QUERY", "QRFLUIDMODEL", "END"}, {"REPLY",
                                                         {"FLUIDMODELDNAME", Texts{"F1"}},
                                                         {"EOSNAME", Texts{"PR"}},
                                                         {"NCOMPS", Texts{"C1", "C2"}},
                                                         {"BIC", Numbers{0.01}},
                                                         {"EOSPROPNAME", Texts{"TCrit"}},
                                                         {"VALUES", Numbers{1, 2}},
                                                         {"FLUIDMODELDNAME", Texts{"F2"}},
                                                         {"EOSNAME", Texts{"SRK"}},
                                                         {"NCOMPS", Texts{}},
                                                         {"BIC", Numbers{}},
                                                         "END"});
  Session2016 client(peer);
  const std::vector<ReservoirFluidRecord> records = client->get_res_fluid_models();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].componentNames, (Strings{"C1", "C2"}));
  EXPECT_EQ(records[0].propertyNames, Strings{"TCrit"});
  EXPECT_EQ(records[0].propertyValues[0], (Doubles{1, 2}));
  EXPECT_EQ(records[0].binaryInteraction, Doubles{0.01});
  EXPECT_EQ(records[1].eosName, "SRK");
}

TEST(ClientQueries, TakeTheFluidModelUnderAnyNameUpTo2017_1) {
  const Entries request = {"QUERY", "QFMFLUIDMODEL", "END"};
  const Entries reply = {"REPLY", {"ANYTHING", Texts{"C1"}}, "END"};
  {
    ScriptedPeer peer;
    peer.Greet().Answer(request, reply).Answer(request, {"REPLY", "END"});
    Session2016 client(peer);
    EXPECT_EQ(client->get_fm_fluid_model(), Strings{"C1"});
    EXPECT_TRUE(client->get_fm_fluid_model().empty());
  }
  ScriptedPeer peer;
  peer.Greet()
      .Answer(request, {"REPLY", {"NCOMPS", Texts{"C1", "C2"}}, "END"})
      .Expect(request)
      .Reply(reply);
  Session2017 client(peer);
  EXPECT_EQ(client->get_fm_fluid_model(), (Strings{"C1", "C2"}));
  EXPECT_EQ(Raised([&] { client->get_fm_fluid_model(); }),
            "length_error: Incorrect header (received: ANYTHING-1-CSTR vs expected: "
            "NCOMPS-1-...)");
}

struct BadReply {
  const char* what;
  Entries reply;
  std::function<void(v2017_2::IntersectClient&)> ask;
  const char* failure;
};

class BadReplies : public testing::TestWithParam<BadReply> {};

TEST_P(BadReplies, AreRefused) {
  ScriptedPeer peer;
  peer.Greet().ExpectAnyMessage().Reply(GetParam().reply);
  Session2017 client(peer);
  EXPECT_EQ(Raised([&] { GetParam().ask(client.client); }), GetParam().failure);
}

void AskWells(v2017_2::IntersectClient& client) { client.query_wells({"P"}, {"A", "B", "C"}); }
void AskInflow(v2017_2::IntersectClient& client) {
  client.get_ipr_data_for_wells({"P"}, {"BHP"}, 2, 1.0);
}
void SetStatus(v2017_2::IntersectClient& client) {
  client.set_status_for_wells({"P"}, {"OPEN"}, "USER");
}

INSTANTIATE_TEST_SUITE_P(
    Client, BadReplies,
    testing::Values(
        BadReply{"ShortRow",
                 {"REPLY",
                  {"QITEMS", Texts{"A", "B", "C"}},
                  {"WELLNAME", Texts{"P"}},
                  {"VALUES", Numbers{1, 2}},
                  "END"},
                 AskWells,
                 "length_error: Incorrect header (received: VALUES-2-DOUB vs expected: "
                 "VALUES-3-DOUB)"},
        BadReply{"TwoNames",
                 {"REPLY", {"QITEMS", Texts{}}, {"WELLNAME", Texts{"P", "Q"}}, "END"},
                 AskWells,
                 "length_error: Incorrect header (received: WELLNAME-2-CSTR vs expected: "
                 "WELLNAME-1-...)"},
        BadReply{"NameIsANumber",
                 {"REPLY", {"QITEMS", Texts{}}, {"WELLNAME", Numbers{1}}, "END"},
                 AskWells,
                 "invalid_argument: Incorrect header (received: DOUB vs expected: CSTR )"},
        BadReply{"NoReply",
                 {"READY", "END"},
                 AskWells,
                 "length_error: Incorrect header (received: READY-0-MESS vs expected: "
                 "REPLY-0-MESS)"},
        BadReply{"UnknownEntry",
                 {"REPLY", {"EXTRA", Texts{}}, "END"},
                 AskWells,
                 "length_error: Incorrect header (received: EXTRA-0-CSTR vs expected: "
                 "QITEMS-0-...)"},
        BadReply{"SurplusEntry",
                 {"REPLY", "END", "END"},
                 AskWells,
                 "length_error: Received message is longer than expected (received: 50 vs "
                 "expected: 34)"},
        BadReply{"ReadyIsMissing", {"REPLY", "END"}, AskWells, "exception: read: End of file"},
        BadReply{"TwoItems",
                 {"REPLY",
                  {"WELLNAME", Texts{"P"}},
                  {"NPOINTS", Ints{2}},
                  {"ITEM", Texts{"A", "B"}},
                  "END"},
                 AskInflow,
                 "length_error: Incorrect header (received: ITEM-2-CSTR vs expected: ITEM-1-...)"},
        BadReply{"NegativePoints",
                 {"REPLY",
                  {"WELLNAME", Texts{"P"}},
                  {"NPOINTS", Ints{-1}},
                  {"ITEM", Texts{"A"}},
                  {"VALUES", Numbers{1}},
                  "END"},
                 AskInflow,
                 "length_error: Incorrect header (received: VALUES-1-DOUB vs expected: "
                 "VALUES-18446744073709551615-DOUB)"},
        BadReply{"SetterRefused",
                 {"ERROR", "END"},
                 SetStatus,
                 "length_error: Incorrect header (received: ERROR-0-MESS vs expected: "
                 "READY-0-MESS)"},
        BadReply{"FluidModel",
                 {"REPLY", {"FLUIDMODELNAME", Texts{"F"}}, "END"},
                 [](v2017_2::IntersectClient& client) { client.get_res_fluid_models(); },
                 "length_error: Incorrect header (received: FLUIDMODELNAME-1-CSTR vs expected: "
                 "FLUIDMODELDNAME-1-...)"}),
    [](const auto& test) { return std::string(test.param.what); });

TEST(ClientSetters, SayWhatTheCatalogueSays) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer({"SET",
               "SETWCONSTRAINTS",
               {"WELLNAME", Texts{"P1"}},
               {"ITEMS", Texts{"A", "B"}},
               {"VALUES", Numbers{1, 2}},
               {"SETTERS", Texts{"USER", "USER"}},
               {"WELLNAME", Texts{"P2"}},
               {"ITEMS", Texts{}},
               {"VALUES", Numbers{}},
               {"SETTERS", Texts{}},
               "END"})
      .Answer({"SET", "SETWCONSTRAINTS", "END"})
      .Answer({"SET",
               "SETWSTATUS",
               {"WCLOSURE", Texts{"USER"}},
               {"SETITEM", Texts{"STATUS"}},
               {"WELNAMES", Texts{}},
               {"VALUES", Texts{}},
               "END"})
      .Answer({"SET",
               "SETWELLS",
               {"SETITEM", Texts{"UPTIME_FRACTION"}},
               {"WELNAMES", Texts{"P1"}},
               {"VALUES", Numbers{0.5}},
               "END"})
      .Answer({"SET",
               "CREATE_FLDSRCEXT",
               {"WELLNAME", Texts{"I1"}},
               {"STNAME", Texts{"S1"}},
               {"STPHASE", Texts{"GAS"}},
               "END"},
              {"REPLY", {"STRET", Ints{7}}, "END"})
      .Answer({"SET",
               "SETWSTRE",
               {"STNAME", Texts{"S1"}},
               {"STCMPVALUES", Numbers{0.25}},
               {"STCMPNAMES", Texts{"X"}},
               {"STPHASE", Texts{""}},
               "END"});
  Session2017 client(peer);
  client->set_constraints_for_wells({"P1", "P2"}, {{"A", "B"}, {}}, {{1, 2}, {}},
                                    {{"USER", "USER"}, {}});
  client->set_constraints_for_wells({}, std::vector<Strings>(), {}, {});
  client->set_status_for_wells({}, {}, "USER");
  client->set_uptime_fractions_for_wells({"P1"}, {0.5});
  EXPECT_TRUE(client->create_fluid_source_external("I1", "S1", "GAS"));
  client->set_composition_of_fluid_source_external("S1", {0.25}, {"X"}, "");
}

TEST(ClientSetters, CompareSizesBeforeAnythingIsSaid) {
  v2017_2::IntersectClient client;
  const std::string prefix = "invalid_argument: IntersectClient::";
  const std::string sizes = ": inconsistent size of arguments ";
  EXPECT_EQ(Raised([&] {
              client.set_constraints_for_wells({"P", "Q"}, {{}, {}, {}}, {{}, {}}, {{}, {}});
            }),
            prefix + "set_constraints_for_wells" + sizes + "1 and 2 (2 vs 3)");
  EXPECT_EQ(Raised([&] { client.set_constraints_for_wells({"P"}, {{}}, {}, {{}}); }),
            prefix + "set_constraints_for_wells" + sizes + "1 and 3 (1 vs 0)");
  EXPECT_EQ(Raised([&] {
              client.set_constraints_for_wells({"P"}, {{"A", "B"}}, {{1}}, {{"U", "U"}});
            }),
            prefix + "set_constraints_for_wells" + sizes + "2 and 3 (1 vs 1)");
  EXPECT_EQ(Raised([&] {
              client.set_constraints_for_wells({"P"}, {{"A", "B"}}, {{1, 2}}, {{"U"}});
            }),
            prefix + "set_constraints_for_wells" + sizes + "2 and 4 (1 vs 1)");
  EXPECT_EQ(Raised([&] {
              client.set_status_for_wells({"P", "Q", "R"}, {"", ""}, "USER");
            }),
            prefix + "set_status_for_wells" + sizes + "1 and 2 (3 vs 2)");
  EXPECT_EQ(Raised([&] { client.set_uptime_fractions_for_wells({"P"}, {}); }),
            prefix + "set_uptime_fractions_for_wells" + sizes + "1 and 2 (1 vs 0)");
  EXPECT_EQ(Raised([&] { client.set_composition_of_fluid_source_external("S", {1}, {}, ""); }),
            prefix + "set_composition_of_fluid_source_external" + sizes + "2 and 3 (1 vs 0)");
  EXPECT_EQ(Raised([&] { client.get_ipr_data_for_wells({"P"}, {}, 0, 1); }),
            prefix + "get_ipr_data_for_wells" + sizes + "1 and 2 (1 vs 0)");
}

}  // namespace
}  // namespace gantry
