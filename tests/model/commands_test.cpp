// The text interface: properties, commands and the description.

#include <future>
#include <thread>

#include "model/model_fixture.h"

namespace gantry::test {
namespace {

class Commands : public ModelTest {
 protected:
  Commands() { peer.wells = {{.name = "P1"}, {.name = "P2"}}; }

  std::string DoAndTell(const std::string& command) { return Outcome(Do(command)); }
};

TEST_F(Commands, AnswerForTheModelsOwnWordsInAnyCase) {
  for (const auto& [path, answer] : {std::pair{"Intersect.IsRunning", "0"},
                                     {"intersect.ISRUNNING", "0"},
                                     {"Intersect.Compositional", "0"},
                                     {"Intersect.CurrentElapsedDays", "-1"},
                                     {"Intersect.StaticWell.$Count", "0"},
                                     {"Other.Something", "failed"},
                                     {"Intersect.Something", "failed"},
                                     {"", "failed"}}) {
    GetPropertyRequest request = {};
    request.path = path;
    const std::string outcome = Outcome(Command(EXT_GET_PROPERTY, &request));
    EXPECT_EQ(outcome == "done" ? request.value : outcome, answer) << path;
  }
  EXPECT_EQ(Outcome(Set("CurrentElapsedDays", "9")), "failed") << "they can't be set";
}

TEST_F(Commands, OfferWellsOnlyWhileASimulatorIsThere) {
  EXPECT_EQ(Get("Well[0].Name"), "none");
  peer.variables = {{"WATER_PRODUCTION_RATE", 158.987}, {"SKIN", 2.5}};
  StartSimulator();
  EXPECT_EQ(Get("Well[1].Name"), "P2");
  EXPECT_EQ(Get("Well[{P2}].SKIN"), "2.5");
  EXPECT_EQ(Get("Well[2].Name"), "none");
  EXPECT_EQ(Set("Well[{P1}].SKIN", "4"), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(),
            Texts{"SET SETWCONSTRAINTS WELLNAME{P1} ITEMS{SKIN} VALUES{4} SETTERS{USER}"});
  peer.CutAt("QWELLS");
  EXPECT_EQ(Get("Well[{P1}].SKIN"), "none");
  EXPECT_TRUE(Error().starts_with("Error retrieving SKIN, "));
}

TEST_F(Commands, AnswerFromTheRecordsWhileAnotherThreadIsInAStep) {
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

TEST_F(Commands, StartRunAndStopTheSimulator) {
  NameCase();
  peer.Start();
  EXPECT_EQ(DoAndTell("Intersect.StopIX"), "Intersect is already not running");
  EXPECT_EQ(DoAndTell("Intersect.StartIX()"), "done");
  EXPECT_EQ(DoAndTell("intersect.startix"), "Intersect is already running");
  EXPECT_EQ(Get("Well[{P2}].CurPressure"), "3000") << "all wells have been read";
  peer.TakeOrders();
  EXPECT_EQ(DoAndTell("Intersect.RunToTime(100)"), "done");
  EXPECT_EQ(Get("CurrentElapsedDays"), "100");
  EXPECT_EQ(peer.TakeOrders(), Texts{"CONTINUE_UNTIL TIME{99}"})
      << "before a run has set it, the count of what the simulator was told stands at -1";
  EXPECT_EQ(DoAndTell("Intersect.StopIX()"), "done");
  EXPECT_EQ(Get("IsRunning"), "0");
}

TEST_F(Commands, SayWhatIsWrongWithThem) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Other.StartIX()", "Invalid prefix"},
      {"Intersect.Nonsense()", "done"},
      {"Intersect.StartIX(1)", "Bad number of arguments"},
      {"Intersect.StopIX(1,2)", "Bad number of arguments"},
      {"Intersect.RunToTime", "Bad argument"},
      {"Intersect.RunToTime(-1)", "RunToTime called for a time which has already passed"},
      {"Intersect.RunToTime(5)", "The simulation process is not running."},
  };
  for (const auto& [command, answer] : cases) EXPECT_EQ(DoAndTell(command), answer) << command;
}

TEST_F(Commands, HoldOrdersBackAfterATimeThatHasPassed) {
  BeginRun({0});
  StepBy(100.0);
  Operate(0, 100.0, 0.0, 0.0);
  peer.TakeOrders();
  EXPECT_EQ(DoAndTell("Intersect.RunToTime(100)"),
            "RunToTime called for a time which has already passed");
  StepBy(1.0);
  EXPECT_EQ(peer.TakeOrders(), Texts{"CONTINUE_UNTIL TIME{101}"});
}

TEST_F(Commands, DescribeTheDeckAndWhereItRuns) {
  char text[600];
  NameCase();
  const std::string deck = (Case() / "FIELD.afi").string();
  Command(EXT_GET_DESCRIPTION, text, sizeof text);
  EXPECT_EQ(text, deck + "\n<Not currently running>");
  peer.Start();
  Command(EXT_START_SIMULATOR);
  Command(EXT_GET_DESCRIPTION, text, sizeof text);
  EXPECT_EQ(text, deck + "\nRunning on: Local host");
}

}  // namespace
}  // namespace gantry::test
