#include "simulator_side/controller_session.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include <gtest/gtest.h>

#include "sample_deck.h"
#include "served_simulator.h"
#include "support/wire_entries.h"

namespace gantry::simulator::test {
namespace {

using namespace gantry::test;

/// A session past its handshake. The controller goes before the simulator waits for its end.
class Session : public testing::Test {
 protected:
  void SetUp() override { controller.Greet(); }

  Entries AskThenReady(const std::string& request) {
    const Entries reply = controller.Ask(Parse(request));
    EXPECT_EQ(Describe(controller.Receive()), "READY END ");
    return reply;
  }
  double Number(const std::string& well, const std::string& item) {
    const Entries reply =
        AskThenReady("QUERY QWELLS QITEMS{" + item + "} WELNAMES{" + well + "} END");
    return std::get<Numbers>(reply.at(3).data).at(0);
  }

  static Entries Constraint(const std::string& item, const std::string& value) {
    return Parse("SET SETWCONSTRAINTS WELLNAME{P} ITEMS{" + item + "} VALUES[" + value +
                 "] SETTERS{USER} END");
  }

  ServedSimulator simulator{SampleDeck()};
  RawController controller{simulator.Port()};
};

/// Talks of a controller with the sample's simulator as they are written down: "> " what the
/// controller says, "< " what it hears, "| " why the simulator has ended the session, if it has.
class Talk : public testing::TestWithParam<const char*> {
 protected:
  struct Partners {
    ServedSimulator simulator{SampleDeck()};
    std::optional<RawController> controller{simulator.Port()};
  };

  void Take(const std::string& line) {
    const std::string rest = line.substr(std::min<size_t>(line.size(), 2));
    if (line.starts_with("> ") && !partners_) partners_.emplace();
    if (line.starts_with("> ")) partners_->controller->Send(Parse(rest));
    if (line.starts_with("< ")) {
      EXPECT_EQ(Describe(partners_->controller->Receive()), rest + " ");
    }
    if (!line.starts_with("|")) return;
    partners_->controller.reset();
    EXPECT_EQ(partners_->simulator.Failure(), rest);
    partners_.reset();
  }

 private:
  std::optional<Partners> partners_;
};

TEST_P(Talk, GoesAsItIsWritten) {
  std::istringstream lines(
      TestFolder::Read(GANTRY_SAMPLE_DECKS "/talks/" + std::string(GetParam()) + ".talk"));
  for (std::string line; std::getline(lines, line);) Take(line);
}

INSTANTIATE_TEST_SUITE_P(Sample, Talk,
                         testing::Values("positions_to_the_end",
                                         "questions_about_a_black_oil_model",
                                         "wells_are_shut_and_opened_and_abandoned",
                                         "messages_that_are_refused"),
                         [](const auto& talk) { return std::string(talk.param); });

TEST_F(Session, HoldsAConstraintAtOnceAndForgetsItWithTheNextList) {
  const double most = Number("P", "OIL_PRODUCTION_RATE");
  EXPECT_EQ(Describe(controller.Ask(Constraint("LIQUID_PRODUCTION_RATE", "500"))), "READY END ");
  EXPECT_NEAR(Number("P", "LIQUID_PRODUCTION_RATE"), 500.0, 1e-6);
  controller.Ask(Constraint("GAS_PRODUCTION_RATE", "1e9"));
  EXPECT_EQ(Number("P", "OIL_PRODUCTION_RATE"), most);
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

TEST_F(Session, EndsWithTheReasonWhenBytesMakeNoMessage) {
  controller.SendBytes(FrameOf(Payload(Entries{"QUERY", "QWELLS"}) +
                               HeaderBytes("QITEMS", uint64_t{1} << 60, "CSTR")));
  EXPECT_EQ(Describe(controller.Receive()), "ERROR: Not enough data read from network END ");
}

}  // namespace
}  // namespace gantry::simulator::test
