#include "client/v2016_2/intersect_client.h"

#include <functional>

#include <gtest/gtest.h>

#include "client/v2017_2/intersect_client.h"
#include "support/connector_talk.h"
#include "support/raised.h"
#include "support/scripted_peer.h"

namespace gantry::test {
namespace {

constexpr uint32_t kTimeout = 5;
using Client2016 = v2016_2::IntersectClient;
using Client2017 = v2017_2::IntersectClient;

TEST(Client, SaysAndTakesMessagesAsTheyAreWritten) {
  for (const Talk& talk : TalksIn("client/talks/messages.talk")) {
    ScriptedPeer peer;
    peer.Greet()
        .Answer("QUERY QRESVR_STR QITEMS{IX_VERSION} END",
                "REPLY QITEM{IX_VERSION} VALUES{2017.2} END")
        .Answer("QUERY QRESVR_STR QITEMS{UNIT_SYSTEM} END",
                "REPLY QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_METRIC} END");
    for (const Turn& turn : talk.turns) {
      for (const std::string& line : turn.wire) {
        const Entries message = Parse(line.substr(2));
        line[0] == '>' ? peer.Expect(message) : peer.Reply(message);
      }
    }
    peer.Start();
    const auto connector = CreateLocalConnector(kVersion2017_2, peer.Port());
    Play(talk, [&](const Turn& turn, Texts& told) { Ask(*connector, Parse(turn.call), told); });
  }
}

TEST(Client, TriesAgainAfterTheSimulatorRefusedTheSetup) {
  ScriptedPeer peer;
  peer.Expect("SETUP VERSION{V2} END").Reply("STARTED ERRORS{no licence, and more} END");
  peer.Reconnect().Greet().Start();
  Client2017 client;
  const auto connect = [&client, port = peer.Port()] {
    client.connect("localhost", port, kTimeout);
  };
  EXPECT_EQ(Raised(connect), "invalid_argument: no licence");
  EXPECT_EQ(client.position(), AlgorithmicPosition::UNCONNECTED);
  connect();
  EXPECT_EQ(client.position(), AlgorithmicPosition::MODEL_DEFINITION);
  EXPECT_EQ(Raised(connect), "invalid_argument: Already connected to INTERSECT.");
  EXPECT_EQ(position_name(AlgorithmicPosition::STARTING), "STARTING");
  EXPECT_EQ(Raised([] { position_name(static_cast<AlgorithmicPosition>(5)); }),
            "invalid_argument: Incorrect algorithmic position");
}

// What no connector asks for.
TEST(Client, ReadsConstraintsInflowAndFluidModels) {
  const char* const inflowQuery =
      "QUERY QIPRDATA WELNAMES{P1, P2} PRESSURETYPES{BHP, THP} NPOINTS<2> SKEWNESS[2.5] END";
  const char* const fluidQuery = "QUERY QFMFLUIDMODEL END";
  ScriptedPeer peer;
  peer.Greet()
      .Answer("QUERY QWCONSTRAINTS WELNAMES{*} END",
              "REPLY WELLNAME{P1} ITEMS{A, B} VALUES[1, 2] SETTERS{USER, DECK} END")
      .Answer(inflowQuery,
              "REPLY WELLNAME{P1} NPOINTS<2> ITEM{OIL} VALUES[1, 2] ITEM{GAS} VALUES[3, 4] "
              "WELLNAME{P2} NPOINTS<0> END")
      .Answer(fluidQuery, "REPLY ANYTHING{C1} END")
      .Answer(fluidQuery, "REPLY END")
      .Expect(inflowQuery)
      .Reply("REPLY WELLNAME{P} NPOINTS<2> ITEM{A, B} END")
      .Reconnect();
  peer.Greet().Expect(fluidQuery).Reply("REPLY ANYTHING{C1} END").Start();
  {
    Client2016 client;
    client.connect("localhost", peer.Port(), kTimeout);
    const WellConstraintsResult found = client.get_constraints_for_wells({"*"});
    EXPECT_EQ(Line(LineOf(found.wells), LineOf(found.items.at(0)), LineOf(found.values.at(0)),
                   LineOf(found.setters.at(0))),
              "P1 A B 1 2 USER DECK");
    const auto measure = [&] {
      return client.get_ipr_data_for_wells({"P1", "P2"}, {"BHP", "THP"}, 2, 2.5);
    };
    const IPRQueryResult inflow = measure();
    EXPECT_EQ(inflow.items, (std::vector<Strings>{{"OIL", "GAS"}, {}}));
    EXPECT_EQ(Line(LineOf(inflow.wells), LineOf(inflow.values.at(0).at(1))), "P1 P2 3 4");
    EXPECT_TRUE(client.get_ipr_data_for_wells({"P1"}, {"BHP"}, 0, 1).wells.empty()) << "unasked";
    EXPECT_TRUE(client.get_ipr_data_for_wells({}, {}, 5, 1).wells.empty()) << "unasked";
    EXPECT_EQ(client.get_fm_fluid_model(), Strings{"C1"}) << "under any name";
    EXPECT_TRUE(client.get_fm_fluid_model().empty());
    EXPECT_EQ(Raised(measure),
              "length_error: Incorrect header (received: ITEM-2-CSTR vs expected: ITEM-1-...)");
  }
  Client2017 client;
  client.connect("localhost", peer.Port(), kTimeout);
  EXPECT_EQ(Raised([&] { client.get_fm_fluid_model(); }),
            "length_error: Incorrect header (received: ANYTHING-1-CSTR vs expected: NCOMPS-1-...)");
}

TEST(Client, ComparesSizesBeforeAnythingIsSaid) {
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
