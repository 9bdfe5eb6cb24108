#include "client/v2016_2/intersect_client.h"

#include <functional>

#include <gtest/gtest.h>

#include "client/v2017_2/intersect_client.h"
#include "support/raised.h"
#include "support/row_tables.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

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
using Client2017 = v2017_2::IntersectClient;
using Session2016 = Session<v2016_2::IntersectClient>;
using Session2017 = Session<Client2017>;

TEST(ClientSession, FollowsThePositionsThatTheSimulatorReports) {
  ScriptedPeer peer;
  peer.Greet().Expect("CONTINUE END").Reply(Step("BEGIN_NEWTON"));
  peer.Expect("CONTINUE_UNTIL TIME[31.5] END").Reply(Step("BEGIN_NEWTON", 31.5));
  peer.Expect("SHUTDOWN END").Reply("FINISHED END");
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
  EXPECT_EQ(position_name(AlgorithmicPosition::STARTING), "STARTING");
  EXPECT_EQ(Raised([] { position_name(static_cast<AlgorithmicPosition>(5)); }),
            "invalid_argument: Incorrect algorithmic position");
}

TEST(ClientSession, TriesAgainAfterTheSimulatorRefusedTheSetup) {
  ScriptedPeer peer;
  peer.ExpectAnyMessage().Reply("STARTED ERRORS{no licence, and more} END").Reconnect();
  peer.Greet().Start();
  Client2017 client;
  EXPECT_EQ(Raised([&] { client.connect("localhost", peer.Port(), kTimeout); }),
            "invalid_argument: no licence");
  EXPECT_EQ(client.position(), AlgorithmicPosition::UNCONNECTED);
  client.connect("localhost", peer.Port(), kTimeout);
  EXPECT_EQ(client.position(), AlgorithmicPosition::MODEL_DEFINITION);
}

/// "length_error: Incorrect header (received: A vs expected: B)"
std::string WrongHeader(const std::string& received, const std::string& expected) {
  return "length_error: Incorrect header (received: " + received + " vs expected: " + expected +
         ")";
}

TEST(ClientSession, EndsAtAPositionThatBreaksTheProtocol) {
  const std::string date = "STEP POSITION{BEGIN_NEWTON} TIME[0] DATE<2020, 1, 1, 0, 0> END";
  const std::vector<std::pair<std::string, std::string>> answers = {
      {Frame(Step("STARTING")),
       "invalid_argument: Incorrect algorithmic position received (STARTING)"},
      {Frame(Parse("READY END")), "invalid_argument: Incorrect header received (READY)"},
      {Frame(Parse("STEP#1 END")), WrongHeader("STEP-1-MESS", "STEP-0-MESS")},
      {Frame(Parse(date)), WrongHeader("DATE-5-INTE", "DATE-6-INTE")},
      {Word(0) + Word(99), "length_error: Not enough data read from network"},
      {"", "exception: read: End of file"}};
  for (const auto& [bytes, failure] : answers) {
    ScriptedPeer peer;
    peer.Greet().ExpectAnyMessage().ReplyBytes(bytes);
    Session2016 client(peer);
    EXPECT_EQ(Raised([&] { client->continue_simulation(); }), failure);
  }
}

TEST(ClientQueries, ReadNumbersAndWordsOfWellsAndOfTheReservoir) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer("QUERY QWELLS QITEMS{A, B} WELNAMES{*} END",
              "REPLY QITEMS{B} WELLNAME{P1} VALUES[1.5] WELLNAME{P2} VALUES[2.5] END")
      .Answer("QUERY QWELLS_STR QITEMS{TYPE} WELNAMES{P1} END",
              "REPLY QITEMS{TYPE} WELLNAME{P1} VALUES{PRODUCER} END")
      .Answer("QUERY QWELLS QITEMS{} WELNAMES{P1} END", "REPLY QITEMS{} END")
      .Answer("QUERY QWELLS QITEMS{} WELNAMES{} END", "REPLY END")
      .Answer("QUERY QRESVR QITEMS{START_DATE} END", "REPLY QITEM{START_DATE} VALUES<2020, 1> END")
      .Answer("QUERY QRESVR_STR QITEMS{A, B} END",
              "REPLY QITEM{A} VALUES{} QITEM{B} VALUES{, y} END")
      .Answer("QUERY QWCONSTRAINTS WELNAMES{*} END",
              "REPLY WELLNAME{P1} ITEMS{A, B} VALUES[1, 2] SETTERS{USER, DECK} END");
  Session2016 client(peer);
  WellQueryResult numbers = client->query_wells({"*"}, {"A", "B"});
  EXPECT_EQ(numbers.items, Strings{"B"}) << "those that the reply names";
  EXPECT_EQ(numbers.wells, (Strings{"P1", "P2"}));
  EXPECT_EQ(numbers.values[1].front(), 2.5);
  EXPECT_EQ(client->query_wells_as_strings({"P1"}, {"TYPE"}).values[0].front(), "PRODUCER");
  EXPECT_TRUE(client->query_wells({"P1"}, {}).wells.empty());
  EncodedMessage query;
  client->encode_well_query({}, {}, query);
  client->query_wells(query, numbers);
  EXPECT_TRUE(numbers.wells.empty() && numbers.items.empty() && numbers.values.RowCount() == 0);
  EXPECT_EQ(client->query_reservoir({"START_DATE"}).values[0][1], 1);
  const auto texts = client->query_reservoir_as_strings({"A", "B"});
  EXPECT_EQ(RowsOf(texts.values), (std::vector<Texts>{{}, {"", "y"}}));
  const WellConstraintsResult constraints = client->get_constraints_for_wells({"*"});
  EXPECT_EQ(constraints.wells, Strings{"P1"});
  EXPECT_EQ(constraints.items[0], (Strings{"A", "B"}));
  EXPECT_EQ(constraints.values[0], (Doubles{1, 2}));
  EXPECT_EQ(constraints.setters[0], (Strings{"USER", "DECK"}));
}

TEST(ClientQueries, ReadInflowAndEveryFluidModel) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer(
          "QUERY QIPRDATA WELNAMES{P1, P2} PRESSURETYPES{BHP, THP} NPOINTS<2> SKEWNESS[2.5] END",
          "REPLY WELLNAME{P1} NPOINTS<2> ITEM{OIL} VALUES[1, 2] ITEM{GAS} VALUES[3, 4] "
          "WELLNAME{P2} NPOINTS<0> END")
      .Answer("QUERY QRFLUIDMODEL END",
              "REPLY FLUIDMODELDNAME{F1} EOSNAME{PR} NCOMPS{C1, C2} BIC[0.01] "
              "EOSPROPNAME{TCrit} VALUES[1, 2] "
              "FLUIDMODELDNAME{F2} EOSNAME{SRK} NCOMPS{} BIC[] END");
  Session2016 client(peer);
  const IPRQueryResult inflow =
      client->get_ipr_data_for_wells({"P1", "P2"}, {"BHP", "THP"}, 2, 2.5);
  EXPECT_EQ(inflow.wells, (Strings{"P1", "P2"}));
  EXPECT_EQ(inflow.items, (std::vector<Strings>{{"OIL", "GAS"}, {}}));
  EXPECT_EQ(inflow.values[0][1], (Doubles{3, 4}));
  EXPECT_TRUE(client->get_ipr_data_for_wells({"P1"}, {"BHP"}, 0, 1).wells.empty()) << "unasked";
  EXPECT_TRUE(client->get_ipr_data_for_wells({}, {}, 5, 1).wells.empty()) << "unasked";
  const std::vector<ReservoirFluidRecord> fluids = client->get_res_fluid_models();
  ASSERT_EQ(fluids.size(), 2u);
  EXPECT_EQ(fluids[0].componentNames, (Strings{"C1", "C2"}));
  EXPECT_EQ(fluids[0].propertyNames, Strings{"TCrit"});
  EXPECT_EQ(fluids[0].propertyValues[0], (Doubles{1, 2}));
  EXPECT_EQ(fluids[0].binaryInteraction, Doubles{0.01});
  EXPECT_EQ(fluids[1].eosName, "SRK");
}

TEST(ClientQueries, TakeTheFluidModelUnderAnyNameUpTo2017_1) {
  const char* const request = "QUERY QFMFLUIDMODEL END";
  const char* const other = "REPLY ANYTHING{C1} END";
  ScriptedPeer peer;
  peer.Greet().Answer(request, other).Answer(request, "REPLY END").Reconnect();
  peer.Greet().Answer(request, "REPLY NCOMPS{C1, C2} END").Expect(request).Reply(other);
  {
    Session2016 client(peer);
    EXPECT_EQ(client->get_fm_fluid_model(), Strings{"C1"});
    EXPECT_TRUE(client->get_fm_fluid_model().empty());
  }
  Client2017 client;
  client.connect("localhost", peer.Port(), kTimeout);
  EXPECT_EQ(client.get_fm_fluid_model(), (Strings{"C1", "C2"}));
  EXPECT_EQ(Raised([&] { client.get_fm_fluid_model(); }),
            WrongHeader("ANYTHING-1-CSTR", "NCOMPS-1-..."));
}

TEST(ClientQueries, RefuseAReplyOfAnotherForm) {
  using Ask = void (*)(Client2017&);
  const Ask wells = [](Client2017& client) { client.query_wells({"P"}, {"A", "B", "C"}); };
  const Ask inflow = [](Client2017& client) {
    client.get_ipr_data_for_wells({"P"}, {"BHP"}, 2, 1.0);
  };
  const Ask status = [](Client2017& client) {
    client.set_status_for_wells({"P"}, {"OPEN"}, "USER");
  };
  const Ask fluids = [](Client2017& client) { client.get_res_fluid_models(); };
  struct Refusal {
    const char* reply;
    Ask ask;
    std::string failure;
  };
  const std::vector<Refusal> refusals = {
      {"REPLY QITEMS{A, B, C} WELLNAME{P} VALUES[1, 2] END", wells,
       WrongHeader("VALUES-2-DOUB", "VALUES-3-DOUB")},
      {"REPLY QITEMS{} WELLNAME{P, Q} END", wells,
       WrongHeader("WELLNAME-2-CSTR", "WELLNAME-1-...")},
      {"REPLY QITEMS{} WELLNAME[1] END", wells,
       "invalid_argument: Incorrect header (received: DOUB vs expected: CSTR )"},
      {"READY END", wells, WrongHeader("READY-0-MESS", "REPLY-0-MESS")},
      {"REPLY EXTRA{} END", wells, WrongHeader("EXTRA-0-CSTR", "QITEMS-0-...")},
      {"REPLY END END", wells,
       "length_error: Received message is longer than expected (received: 50 vs expected: 34)"},
      {"REPLY END", wells, "exception: read: End of file"},
      {"REPLY WELLNAME{P} NPOINTS<2> ITEM{A, B} END", inflow,
       WrongHeader("ITEM-2-CSTR", "ITEM-1-...")},
      {"REPLY WELLNAME{P} NPOINTS<-1> ITEM{A} VALUES[1] END", inflow,
       WrongHeader("VALUES-1-DOUB", "VALUES-18446744073709551615-DOUB")},
      {"ERROR END", status, WrongHeader("ERROR-0-MESS", "READY-0-MESS")},
      {"REPLY FLUIDMODELNAME{F} END", fluids,
       WrongHeader("FLUIDMODELNAME-1-CSTR", "FLUIDMODELDNAME-1-...")}};
  for (const Refusal& refusal : refusals) {
    ScriptedPeer peer;
    peer.Greet().ExpectAnyMessage().Reply(refusal.reply);
    Session2017 client(peer);
    EXPECT_EQ(Raised([&] { refusal.ask(client.client); }), refusal.failure) << refusal.reply;
  }
}

TEST(ClientSetters, SayWhatTheCatalogueSays) {
  ScriptedPeer peer;
  peer.Greet()
      .Answer(
          "SET SETWCONSTRAINTS WELLNAME{P1} ITEMS{A, B} VALUES[1, 2] SETTERS{USER, USER} "
          "WELLNAME{P2} ITEMS{} VALUES[] SETTERS{} END")
      .Answer("SET SETWCONSTRAINTS END")
      .Answer("SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{} VALUES{} END")
      .Answer("SET SETWELLS SETITEM{UPTIME_FRACTION} WELNAMES{P1} VALUES[0.5] END")
      .Answer("SET CREATE_FLDSRCEXT WELLNAME{I1} STNAME{S1} STPHASE{GAS} END", "REPLY STRET<7> END")
      .Answer("SET SETWSTRE STNAME{S1} STCMPVALUES[0.25] STCMPNAMES{X} STPHASE{OIL} END");
  Session2017 client(peer);
  client->set_constraints_for_wells({"P1", "P2"}, {{"A", "B"}, {}}, {{1, 2}, {}},
                                    {{"USER", "USER"}, {}});
  client->set_constraints_for_wells({}, std::vector<Strings>(), {}, {});
  client->set_status_for_wells({}, {}, "USER");
  client->set_uptime_fractions_for_wells({"P1"}, {0.5});
  EXPECT_TRUE(client->create_fluid_source_external("I1", "S1", "GAS"));
  client->set_composition_of_fluid_source_external("S1", {0.25}, {"X"}, "OIL");
}

TEST(ClientSetters, CompareSizesBeforeAnythingIsSaid) {
  using Act = std::function<void(Client2017&)>;
  const auto constrain = [](Strings wells, std::vector<Strings> items, std::vector<Doubles> values,
                            std::vector<Strings> setters) -> Act {
    return [=](Client2017& c) { c.set_constraints_for_wells(wells, items, values, setters); };
  };
  const std::pair<Act, std::string> mismatches[] = {
      {constrain({"P", "Q"}, {{}, {}, {}}, {{}, {}}, {{}, {}}),
       "set_constraints_for_wells: inconsistent size of arguments 1 and 2 (2 vs 3)"},
      {constrain({"P"}, {{}}, {}, {{}}),
       "set_constraints_for_wells: inconsistent size of arguments 1 and 3 (1 vs 0)"},
      {constrain({"P"}, {{"A", "B"}}, {{1}}, {{"U", "U"}}),
       "set_constraints_for_wells: inconsistent size of arguments 2 and 3 (1 vs 1)"},
      {constrain({"P"}, {{"A", "B"}}, {{1, 2}}, {{"U"}}),
       "set_constraints_for_wells: inconsistent size of arguments 2 and 4 (1 vs 1)"},
      {[](auto& c) { c.set_status_for_wells({"P"}, {}, "USER"); },
       "set_status_for_wells: inconsistent size of arguments 1 and 2 (1 vs 0)"},
      {[](auto& c) { c.set_uptime_fractions_for_wells({"P"}, {}); },
       "set_uptime_fractions_for_wells: inconsistent size of arguments 1 and 2 (1 vs 0)"},
      {[](auto& c) { c.set_composition_of_fluid_source_external("S", {1}, {}, ""); },
       "set_composition_of_fluid_source_external: inconsistent size of arguments 2 and 3 (1 vs 0)"},
      {[](auto& c) { c.get_ipr_data_for_wells({"P"}, {}, 0, 1); },
       "get_ipr_data_for_wells: inconsistent size of arguments 1 and 2 (1 vs 0)"}};
  Client2017 client;
  for (const auto& [act, failure] : mismatches) {
    EXPECT_EQ(Raised([&] { act(client); }), "invalid_argument: IntersectClient::" + failure);
  }
}

}  // namespace
}  // namespace gantry::test
