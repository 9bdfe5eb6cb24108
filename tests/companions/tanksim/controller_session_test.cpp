#include "simulator_side/controller_session.h"

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

/// A session past its handshake. The controller goes before the simulator waits for its end.
class Session : public testing::Test {
 protected:
  void SetUp() override { controller.Greet(); }

  Entries AskThenReady(const std::string& request) {
    const Entries reply = controller.Ask(Parse(request));
    EXPECT_EQ(Describe(controller.Receive()), "READY END ");
    return reply;
  }
  std::string Answer(const std::string& request) { return Describe(AskThenReady(request)); }
  std::string Tell(const std::string& message) { return Describe(controller.Ask(Parse(message))); }
  double Number(const std::string& well, const std::string& item) {
    const Entries reply =
        AskThenReady("QUERY QWELLS QITEMS{" + item + "} WELNAMES{" + well + "} END");
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

TEST_F(Session, GoesThroughItsPositionsToTheEnd) {
  const std::pair<const char*, const char*> kTalk[] = {
      {"CONTINUE END", "STEP POSITION{BEGIN_NEWTON} TIME{0} DATE{2020, 1, 31, 0, 0, 0} END "},
      {"CONTINUE_UNTIL TIME[30.25] END",
       "STEP POSITION{BEGIN_NEWTON} TIME{30.25} DATE{2020, 3, 1, 6, 0, 0} END "},
      {"CONTINUE_UNTIL TIME[30.25] END",
       "STEP POSITION{BEGIN_NEWTON} TIME{30.25} DATE{2020, 3, 1, 6, 0, 0} END "},
      {"CONTINUE_UNTIL TIME[1000] END",
       "STEP POSITION{END_SIMULATE} TIME{400} DATE{2021, 3, 6, 0, 0, 0} END "},
      {"SHUTDOWN END", "FINISHED END "}};
  for (const auto& [message, answer] : kTalk) EXPECT_EQ(Tell(message), answer);
  EXPECT_EQ(simulator.Failure(), "");
}

TEST_F(Session, AnswersQuestionsAboutABlackOilModelInTheOrderOfItsDeck) {
  controller.Ask(WellConstraint("W", "WATER_INJECTION_RATE", 750.0));
  const std::pair<const char*, const char*> kTalk[] = {
      {"QUERY QRESVR_STR QITEMS{IX_VERSION, UNIT_SYSTEM, FM_FLUID_MODEL, NO_SUCH_ITEM} END",
       "REPLY QITEM{IX_VERSION} VALUES{2017.2} QITEM{UNIT_SYSTEM} VALUES{ECLIPSE_FIELD} "
       "QITEM{FM_FLUID_MODEL} VALUES{BLACKOIL} END "},
      {"QUERY QRESVR QITEMS{START_DATE} END",
       "REPLY QITEM{START_DATE} VALUES{2020, 1, 31, 0, 0, 0} END "},
      {"QUERY QFMFLUIDMODEL END", "REPLY END "},
      {"QUERY QRFLUIDMODEL END", "REPLY END "},
      {"SET CREATE_FLDSRCEXT WELLNAME{G} STNAME{G_ginj} STPHASE{GAS} END", "REPLY STRET{0} END "},
      {"QUERY QWELLS_STR QITEMS{TYPE} WELNAMES{*} END",
       "REPLY QITEMS{TYPE} WELLNAME{P} VALUES{PRODUCER} WELLNAME{W} VALUES{WATER_INJECTOR} "
       "WELLNAME{G} VALUES{GAS_INJECTOR} END "},
      {"QUERY QWELLS QITEMS{NO_SUCH_ITEM, UPTIME_FRACTION} WELNAMES{NOBODY, W} END",
       "REPLY QITEMS{UPTIME_FRACTION} WELLNAME{W} VALUES{1} END "},
      {"QUERY QWCONSTRAINTS WELNAMES{W} END",
       "REPLY WELLNAME{W} ITEMS{BOTTOM_HOLE_PRESSURE, WATER_INJECTION_RATE} VALUES{5000, 750} "
       "SETTERS{DECK, USER} END "}};
  for (const auto& [question, answer] : kTalk) EXPECT_EQ(Answer(question), answer);
}

TEST_F(Session, HoldsAConstraintAtOnceAndForgetsItWithTheNextList) {
  Tell("CONTINUE END");
  const double most = Number("P", "OIL_PRODUCTION_RATE");
  EXPECT_EQ(Describe(controller.Ask(WellConstraint("P", "LIQUID_PRODUCTION_RATE", 500.0))),
            "READY END ");
  EXPECT_NEAR(Number("P", "LIQUID_PRODUCTION_RATE"), 500.0, 1e-6);
  controller.Ask(WellConstraint("P", "GAS_PRODUCTION_RATE", 1e9));
  EXPECT_EQ(Number("P", "OIL_PRODUCTION_RATE"), most);
}

TEST_F(Session, ShutsAndOpensAndAbandonsWells) {
  const auto set = [this](const std::string& status) {
    Tell("SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{P} VALUES{" + status + "} END");
    const Entries reply = AskThenReady("QUERY QWELLS_STR QITEMS{STATUS} WELNAMES{P} END");
    return std::get<Texts>(reply.at(3).data).at(0);
  };
  EXPECT_EQ(set("SURFACE_SHUTIN"), "SURFACE_SHUTIN");
  EXPECT_EQ(Number("P", "OIL_PRODUCTION_RATE"), 0.0);
  EXPECT_NEAR(Number("P", "BOTTOM_HOLE_PRESSURE"), 3200.0, 1e-6);
  EXPECT_EQ(set("OPEN"), "OPEN");
  EXPECT_GT(Number("P", "OIL_PRODUCTION_RATE"), 0.0);
  set("ALL_COMPLETIONS_ABANDONED");
  EXPECT_EQ(set("OPEN"), "ALL_COMPLETIONS_ABANDONED");
}

TEST_F(Session, KeepsUptimeWithinAWholeDay) {
  Tell("SET SETWELLS SETITEM{UPTIME_FRACTION} WELNAMES{P, W} VALUES[0.5, 1.000000000001] END");
  EXPECT_EQ(Number("P", "UPTIME_FRACTION"), 0.5);
  EXPECT_EQ(Number("W", "UPTIME_FRACTION"), 1.0);
  EXPECT_EQ(Tell("SET SETWELLS SETITEM{UPTIME_FRACTION} WELNAMES{} VALUES[] END"), "READY END ");
}

TEST_F(Session, MeasuresInflowItself) {
  for (const std::string type : {"BOTTOM_HOLE_PRESSURE", "TUBING_HEAD_PRESSURE"}) {
    const Entries reply = AskThenReady("QUERY QIPRDATA WELNAMES{P} PRESSURETYPES{" + type +
                                       "} NPOINTS<4> SKEWNESS[1] END");
    ASSERT_EQ(reply.at(reply.size() - 3), Entry("ITEM", Texts{type}));
    const Numbers pressures = std::get<Numbers>(reply.at(reply.size() - 2).data);
    ASSERT_EQ(pressures.size(), 4u);
    EXPECT_TRUE(std::ranges::is_sorted(pressures));
    if (type.starts_with("BOTTOM")) {
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
  const auto frame = [](const char* text) { return Frame(Parse(text)); };
  const auto uptime = [](const std::string& wells) {
    return Frame(
        Parse("SET SETWELLS SETITEM{UPTIME_FRACTION} WELNAMES{" + wells + "} VALUES[0.5] END"));
  };
  const std::string boundlessCount = FrameOf(Payload(Entries{"QUERY", "QWELLS"}) +
                                             HeaderBytes("QITEMS", uint64_t{1} << 60, "CSTR"));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    std::string bytes, reason;
    bool isFirst = false;
  } kRefusals[] = {
      {frame("SETUP VERSION{V3} END"), "\"V3\"", true},
      {frame("CONTINUE END"), "Incorrect header (received: CONTINUE", true},
      {frame("DANCE END"), "Unknown message DANCE"},
      {frame("QUERY QDREAMS END"), "Unknown message QUERY QDREAMS"},
      {Word(0) + Word(0), "Not enough data read from network"},
      {frame("CONTINUE END END"),
       "Received message is longer than expected (received: 53 vs expected: 37)"},
      {boundlessCount, "Not enough data read from network"},
      {uptime("P, W"), "Incorrect header (received: VALUES-1-DOUB vs expected: VALUES-2-DOUB)"},
      {uptime("X"), "Unknown well X"},
      {frame("SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{P} VALUES{ASLEEP} END"),
       "Unknown well status ASLEEP"},
      {Frame(WellConstraint("P", "NOISE", 1.0)), "Unknown constraint item NOISE"},
      {Frame(WellConstraint("P", "OIL_PRODUCTION_RATE", nan)),
       "OIL_PRODUCTION_RATE of well P is not a number"},
      {frame("CONTINUE_UNTIL TIME[1e300] END"), "The time to run to is beyond all times"},
  };
  for (const auto& [bytes, reason, isFirst] : kRefusals) {
    ServedSimulator simulator(SampleDeck());
    {
      RawController controller(simulator.Port());
      if (!isFirst) controller.Greet();
      controller.SendBytes(bytes);
      const std::string reply = Describe(controller.Receive());
      EXPECT_TRUE(reply.starts_with(isFirst ? "STARTED ERRORS{" : "ERROR: ")) << reply;
      EXPECT_TRUE(!isFirst || reply.find(reason) != std::string::npos) << reply;
    }
    const std::string failure = simulator.Failure();
    EXPECT_EQ(isFirst ? failure.substr(failure.find(reason), reason.size()) : failure, reason);
  }
}

}  // namespace
}  // namespace gantry::simulator::test
