#include "simulator/server/controller_session.h"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "sample_deck.h"
#include "served_simulator.h"
#include "support/well_messages.h"

namespace gantry::simulator::test {
namespace {

using namespace gantry::test;
using gantry::test::WellConstraint;  // the simulator has a word of this name too

const Entries kReady = {"READY", "END"};

Entries WellQuery(const Texts& items, const Texts& wells, const char* name = "QWELLS") {
  return {"QUERY", name, {"QITEMS", items}, {"WELNAMES", wells}, "END"};
}

Entries StatusSetter(const Texts& wells, const Texts& statuses) {
  return {"SET",
          "SETWSTATUS",
          {"WCLOSURE", Texts{"USER"}},
          {"SETITEM", Texts{"STATUS"}},
          {"WELNAMES", wells},
          {"VALUES", statuses},
          "END"};
}

Entries UptimeSetter(const Texts& wells, const Numbers& fractions) {
  return {"SET",
          "SETWELLS",
          {"SETITEM", Texts{"UPTIME_FRACTION"}},
          {"WELNAMES", wells},
          {"VALUES", fractions},
          "END"};
}

/// A session past its handshake. The controller goes before the simulator waits for its end.
class Session : public testing::Test {
 protected:
  void SetUp() override { controller.Greet(); }

  Entries AskThenReady(const Entries& request) {
    const Entries reply = controller.Ask(request);
    EXPECT_EQ(Describe(controller.Receive()), Describe(kReady));
    return reply;
  }
  std::string Answer(const Entries& request) { return Describe(AskThenReady(request)); }
  double Number(const std::string& well, const std::string& item) {
    const Entries reply = AskThenReady(WellQuery({item}, {well}));
    return std::get<Numbers>(reply.at(3).data).at(0);
  }

  ServedSimulator simulator{SampleDeck()};
  RawController controller{simulator.Port()};
};

TEST(SessionStart, AnswersTheSetUpByteForByte) {
  ServedSimulator simulator(SampleDeck());
  RawController controller(simulator.Port());
  controller.SendBytes(Word(64) + Word(64) + "\x05SETUP" + Word(0) + "MESS" + "\x07VERSION" +
                       Word(1) + "CSTR" + Word(2) + "V2" + "\x03" + "END" + Word(0) + "MESS");
  const std::string started = Word(55) + Word(55) + "\x07STARTED" + Word(0) + "MESS" + "\x06" +
                              "ERRORS" + Word(0) + "CSTR" + "\x03" + "END" + Word(0) + "MESS";
  EXPECT_EQ(controller.ReceiveBytes(started.size()), started);
  EXPECT_EQ(Describe(controller.Receive()),
            "STEP POSITION{MODEL_DEFINITION} TIME{0} DATE{2020, 1, 31, 0, 0, 0} END ");
}

TEST(SessionStart, RefusesAnotherProtocolAndAnotherMessageInItsErrors) {
  const std::pair<Entries, std::string> kGreetings[] = {
      {{"SETUP", {"VERSION", Texts{"V3"}}, "END"}, "\"V3\""},
      {{"CONTINUE", "END"}, "Incorrect header (received: CONTINUE"}};
  for (const auto& [greeting, reason] : kGreetings) {
    ServedSimulator simulator(SampleDeck());
    {
      RawController controller(simulator.Port());
      const Entries reply = controller.Ask(greeting);
      ASSERT_EQ(reply.at(1).name, "ERRORS");
      EXPECT_NE(std::get<Texts>(reply.at(1).data).at(0).find(reason), std::string::npos);
    }
    EXPECT_NE(simulator.Failure().find(reason), std::string::npos);
  }
}

TEST_F(Session, GoesThroughItsPositionsToTheEnd) {
  const auto until = [this](double days) {
    return Describe(controller.Ask({"CONTINUE_UNTIL", {"TIME", Numbers{days}}, "END"}));
  };
  EXPECT_EQ(Describe(controller.Ask({"CONTINUE", "END"})),
            "STEP POSITION{BEGIN_NEWTON} TIME{0} DATE{2020, 1, 31, 0, 0, 0} END ");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(until(30.25),
              "STEP POSITION{BEGIN_NEWTON} TIME{30.25} DATE{2020, 3, 1, 6, 0, 0} END ");
  }
  EXPECT_EQ(until(1000.0), "STEP POSITION{END_SIMULATE} TIME{400} DATE{2021, 3, 6, 0, 0, 0} END ");
  EXPECT_EQ(Describe(controller.Ask({"SHUTDOWN", "END"})), Describe({"FINISHED", "END"}));
  EXPECT_EQ(simulator.Failure(), "");
}

TEST_F(Session, DescribesABlackOilModel) {
  const Texts items = {"IX_VERSION", "UNIT_SYSTEM", "FM_FLUID_MODEL", "NO_SUCH_ITEM"};
  EXPECT_EQ(Answer({"QUERY", "QRESVR_STR", {"QITEMS", items}, "END"}),
            "REPLY QITEM{IX_VERSION} VALUES{2017.2} QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_FIELD} "
            "QITEM{FM_FLUID_MODEL} VALUES{BLACKOIL} END ");
  EXPECT_EQ(Answer({"QUERY", "QRESVR", {"QITEMS", Texts{"START_DATE"}}, "END"}),
            "REPLY QITEM{START_DATE} VALUES{2020, 1, 31, 0, 0, 0} END ");
  EXPECT_EQ(Answer({"QUERY", "QFMFLUIDMODEL", "END"}), "REPLY END ");
  EXPECT_EQ(Answer({"QUERY", "QRFLUIDMODEL", "END"}), "REPLY END ");
  EXPECT_EQ(Answer({"SET",
                    "CREATE_FLDSRCEXT",
                    {"WELLNAME", Texts{"G"}},
                    {"STNAME", Texts{"G_ginj"}},
                    {"STPHASE", Texts{"GAS"}},
                    "END"}),
            "REPLY STRET{0} END ")
      << "there are no fluid sources";
}

TEST_F(Session, AnswersInTheOrderOfTheDeckAndLeavesOutWhatItDoesNotKnow) {
  EXPECT_EQ(Answer(WellQuery({"TYPE"}, {"*"}, "QWELLS_STR")),
            "REPLY QITEMS{TYPE} WELLNAME{P} VALUES{PRODUCER} WELLNAME{W} VALUES{WATER_INJECTOR} "
            "WELLNAME{G} VALUES{GAS_INJECTOR} END ");
  EXPECT_EQ(Answer(WellQuery({"NO_SUCH_ITEM", "UPTIME_FRACTION"}, {"NOBODY", "W"})),
            "REPLY QITEMS{UPTIME_FRACTION} WELLNAME{W} VALUES{1} END ");
}

TEST_F(Session, HoldsAConstraintAtOnceAndForgetsItWithTheNextList) {
  controller.Ask({"CONTINUE", "END"});
  const double most = Number("P", "OIL_PRODUCTION_RATE");
  EXPECT_EQ(Describe(controller.Ask(WellConstraint("P", "LIQUID_PRODUCTION_RATE", 500.0))),
            Describe(kReady));
  EXPECT_NEAR(Number("P", "LIQUID_PRODUCTION_RATE"), 500.0, 1e-6);
  controller.Ask(WellConstraint("P", "GAS_PRODUCTION_RATE", 1e9));
  EXPECT_EQ(Number("P", "OIL_PRODUCTION_RATE"), most);
}

TEST_F(Session, TellsAllConstraintsWithTheirSetters) {
  controller.Ask(WellConstraint("W", "WATER_INJECTION_RATE", 750.0));
  EXPECT_EQ(Answer({"QUERY", "QWCONSTRAINTS", {"WELNAMES", Texts{"W"}}, "END"}),
            "REPLY WELLNAME{W} ITEMS{BOTTOM_HOLE_PRESSURE, WATER_INJECTION_RATE} VALUES{5000, 750} "
            "SETTERS{DECK, USER} END ");
}

TEST_F(Session, ShutsAndOpensAndAbandonsWells) {
  const auto status = [&] {
    const Entries reply = AskThenReady(WellQuery({"STATUS"}, {"P"}, "QWELLS_STR"));
    return std::get<Texts>(reply.at(3).data).at(0);
  };
  controller.Ask(StatusSetter({"P"}, {"SURFACE_SHUTIN"}));
  EXPECT_EQ(status(), "SURFACE_SHUTIN");
  EXPECT_EQ(Number("P", "OIL_PRODUCTION_RATE"), 0.0);
  EXPECT_NEAR(Number("P", "BOTTOM_HOLE_PRESSURE"), 3200.0, 1e-6);
  controller.Ask(StatusSetter({"P"}, {"OPEN"}));
  EXPECT_GT(Number("P", "OIL_PRODUCTION_RATE"), 0.0);
  controller.Ask(StatusSetter({"P"}, {"ALL_COMPLETIONS_ABANDONED"}));
  controller.Ask(StatusSetter({"P"}, {"OPEN"}));
  EXPECT_EQ(status(), "ALL_COMPLETIONS_ABANDONED");
}

TEST_F(Session, KeepsUptimeWithinAWholeDay) {
  controller.Ask(UptimeSetter({"P", "W"}, {0.5, 1.0 + 1e-12}));
  EXPECT_EQ(Number("P", "UPTIME_FRACTION"), 0.5);
  EXPECT_EQ(Number("W", "UPTIME_FRACTION"), 1.0);
  EXPECT_EQ(Describe(controller.Ask(UptimeSetter({}, {}))), Describe(kReady));
}

TEST_F(Session, MeasuresInflowItself) {
  for (const char* type : {"BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE"}) {
    const Entries reply = AskThenReady({"QUERY",
                                        "QIPRDATA",
                                        {"WELNAMES", Texts{"P"}},
                                        {"PRESSURETYPES", Texts{type}},
                                        {"NPOINTS", Ints{4}},
                                        {"SKEWNESS", Numbers{1.0}},
                                        "END"});
    ASSERT_EQ(reply.at(reply.size() - 3), Entry("ITEM", Texts{type}));
    const Numbers pressures = std::get<Numbers>(reply.at(reply.size() - 2).data);
    ASSERT_EQ(pressures.size(), 4u);
    EXPECT_TRUE(std::ranges::is_sorted(pressures));
    if (type == std::string("BOTTOM_HOLE_PRESSURE")) {
      EXPECT_NEAR(pressures.front(), 500.0, 1e-6);
    }
  }
}

TEST(SessionEnd, ComesWhenTheControllerHasGone) {
  ServedSimulator simulator(SampleDeck());
  RawController(simulator.Port()).Greet();
  EXPECT_NE(simulator.Failure().find("read"), std::string::npos);
}

TEST(SessionEnd, ComesWithTheReasonWhenAMessageIsRefused) {
  const std::string boundlessCount = FrameOf(Payload(Entries{"QUERY", "QWELLS"}) +
                                             HeaderBytes("QITEMS", uint64_t{1} << 60, "CSTR"));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<std::string, std::string> kRefusals[] = {
      {Frame(Entries{"DANCE", "END"}), "Unknown message DANCE"},
      {Frame(Entries{"QUERY", "QDREAMS", "END"}), "Unknown message QUERY QDREAMS"},
      {Word(0) + Word(0), "Not enough data read from network"},
      {Frame(Entries{"CONTINUE", "END", "END"}),
       "Received message is longer than expected (received: 53 vs expected: 37)"},
      {boundlessCount, "Not enough data read from network"},
      {Frame(UptimeSetter({"P", "W"}, {0.5})),
       "Incorrect header (received: VALUES-1-DOUB vs expected: VALUES-2-DOUB)"},
      {Frame(UptimeSetter({"X"}, {0.5})), "Unknown well X"},
      {Frame(StatusSetter({"P"}, {"ASLEEP"})), "Unknown well status ASLEEP"},
      {Frame(WellConstraint("P", "NOISE", 1.0)), "Unknown constraint item NOISE"},
      {Frame(WellConstraint("P", "OIL_PRODUCTION_RATE", nan)),
       "OIL_PRODUCTION_RATE of well P is not a number"},
      {Frame(Entries{"CONTINUE_UNTIL", {"TIME", Numbers{1e300}}, "END"}),
       "The time to run to is beyond all times"},
  };
  for (const auto& [bytes, reason] : kRefusals) {
    ServedSimulator simulator(SampleDeck());
    {
      RawController controller(simulator.Port());
      controller.Greet();
      controller.SendBytes(bytes);
      EXPECT_EQ(controller.Receive().at(0).name.substr(0, 7), "ERROR: ");
    }
    EXPECT_EQ(simulator.Failure(), reason);
  }
}

}  // namespace
}  // namespace gantry::simulator::test
