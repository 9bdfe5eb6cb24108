// What the host may ask from a second thread.

#include <future>
#include <thread>

#include "model/model_fixture.h"

namespace gantry::test {
namespace {

TEST_F(ModelTest, AnswersFromItsRecordsWhileAnotherThreadIsInAStep) {
  peer.wells = {{.name = "P1"}, {.name = "P2"}};
  std::promise<void> stepping, answered;
  peer.onMessage = [&](const std::string& message) {
    if (message != "CONTINUE_UNTIL") return;
    stepping.set_value();
    answered.get_future().wait();
  };
  BeginRun({});
  int32_t result = -1;
  std::thread step([&] {
    TimestepRecord record = {};
    record.stepDays = 5.0;
    ExtErrorBlock own = {};
    result = ExtCmd(model, nullptr, EXT_TIMESTEP, &record, 0, &own);
  });
  stepping.get_future().wait();
  const std::pair<const char*, const char*> answers[] = {
      {"CurrentElapsedDays", "0"},    {"Compositional", "0"},
      {"CaseDetails.Parallel", "1"},  {"StaticWell[{P2}].Connected", "0"},
      {"Well[{P2}].Name", "P2"},      {"Nonsense", "none"},
      {"StaticWell[9].Name", "none"}, {"Well[9].SKIN", "none"},
      {"Well[{NOPE}].SKIN", "none"}};
  for (const auto& [path, answer] : answers) EXPECT_EQ(Get(path), answer) << path;
  EXPECT_EQ(Set("Well[{P2}].OilGravity", "0.9"), 0);
  answered.set_value();
  step.join();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(Get("CurrentElapsedDays"), "5");
}

TEST_F(ModelTest, EndsALongRunUpWhenAnotherThreadStopsIt) {
  constexpr double kDaysAhead = 1e6;
  std::jthread stopper;
  peer.onMessage = [&](const std::string& message) {
    if (message != "CONTINUE_UNTIL" || stopper.joinable()) return;
    stopper = std::jthread([this] {
      ExtErrorBlock own = {};
      EXPECT_EQ(ExtCmd(model, nullptr, EXT_CLOSE_SIMULATOR, nullptr, 0, &own), 0);
    });
  };
  StartSimulator();
  EXPECT_EQ(Outcome(StartRun({}, 42004.0 + kDaysAhead)), "done");
  EXPECT_LT(std::stod(Get("CurrentElapsedDays")), kDaysAhead) << "the stop came to nothing";
  peer.TakeOrders();  // whatever the peer's thread has done is seen from here on
  stopper.join();
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 0);
}

}  // namespace
}  // namespace gantry::test
