// How a run comes up: the simulator's process, its static data, and the way to the host's date.

#include <thread>

#include "model/model_fixture.h"
#include "platform/files.h"

namespace gantry::test {
namespace {

/// Days from 31 December 1899 to the first of January 2015.
constexpr double kFieldStart = 42004.0;

class Start : public ModelTest {
 protected:
  Start() {
    peer.wells = {{.name = "P1"},
                  {.name = "W1", .type = "WATER_INJECTOR"},
                  {.name = "G1", .type = "GAS_INJECTOR"},
                  {.name = "X1", .type = "INJECTOR"}};
  }

  Texts WellNames() {
    Texts names;
    EnumSourcesRow row = {};
    row.index = -1;
    while (Command(EXT_ENUM_SOURCES, &row) == 0) names.push_back(row.name);
    return names;
  }

  std::string Connected() {
    std::string names;
    for (const std::string& name : WellNames()) {
      if (Get("StaticWell[{" + name + "}].Connected") == "1") names += name + " ";
    }
    return names;
  }

  void WaitUntilStopped() {
    while (Get("IsRunning") == "1") std::this_thread::yield();
  }
};

TEST_F(Start, ShowsTheHostItsWellsAndItsDate) {
  peer.date = {2015, 3, 2, 0, 0, 0};
  peer.days = 60.0;
  StartSimulator();
  EXPECT_EQ(WellNames(), (Texts{"P1", "W1", "G1", "X1"}));
  EXPECT_EQ(Get("IsRunning") + Get("CurrentElapsedDays"), "160");

  EnumSourcesRow row = {};
  row.index = 2;
  ASSERT_EQ(Command(EXT_ENUM_SOURCES, &row), 0);
  EXPECT_EQ(std::make_tuple(row.kind, row.one1, row.one2, row.kindAgain, row.zero, row.one3),
            std::make_tuple(2, 1, 1, 2, 0, 1));
  EXPECT_EQ(row.index, 3);
  EXPECT_STREQ(row.sourceWord, "source");
  row.index = 0;
  EXPECT_EQ(Command(EXT_ENUM_SOURCES, &row, 2), -1) << "this mode gives only the first well";

  DateRecord date = {};
  ASSERT_EQ(Command(EXT_GET_SIMULATION_DATE, &date), 0);
  EXPECT_EQ(std::make_tuple(date.flags, date.day, date.month, date.year),
            std::make_tuple(3, 2, 3, 2015));
  EXPECT_EQ(date.number, kFieldStart + 60);
}

TEST_F(Start, LaunchesTheProcessAsCaseAndMachineSay) {
  const std::string port = "--dopt=external_controller_port:" + std::to_string(peer.Port()) + "\n";
  struct Launch {
    std::string parallel, mpi, simulator, options, logging, arguments;
  };
  const std::vector<Launch> launches = {
      {"1", "", HELD_SIMULATOR, "-x \"two words\"", "1",
       "FIELD\n" + port + "--dopt=external_controller_logger\n-x\ntwo words\n"},
      {"1", "", "", "   ", "0", "FIELD\n" + port},
      {"4", HELD_SIMULATOR, "/the/simulator", "", "0",
       "-localonly\n-np\n4\n/the/simulator\nFIELD\n" + port}};
  app.Config.SimExecutable = HELD_SIMULATOR;
  NameCase();
  peer.Start();
  for (const Launch& launch : launches) {
    Set("CaseDetails.Parallel", launch.parallel);
    Set("CaseDetails.SimExeName", launch.simulator);
    Set("CaseDetails.StdLogging", launch.logging);
    app.Config.MPIExecutable = launch.mpi;
    app.Config.CmdLine = launch.options;
    ASSERT_EQ(Command(EXT_START_SIMULATOR), 0) << Error();
    EXPECT_EQ(Arguments(), launch.arguments);
    Command(EXT_CLOSE_SIMULATOR);
  }
  app.Config.MPIExecutable = "   ";
  EXPECT_EQ(Outcome(Command(EXT_START_SIMULATOR)),
            "Could not start the simulator process: <A path to mpiexec must be entered in the "
            "configuration screen to run parallel jobs>");
}

TEST_F(Start, EndsWithoutASessionWhereverTheConnectionBreaksAndCanBeTriedAgain) {
  NameCase();
  peer.Start();
  for (const auto& [message, failure] :
       {std::pair{"SETUP", "Could not start the simulator process: "},
        {"QRESVR", "Simulator communication error: "},
        {"CONTINUE", "Connection to simulator failed (ReadStaticData): "}}) {
    peer.CutAt(message);
    EXPECT_EQ(Failure(Command(EXT_START_SIMULATOR)), failure);
    EXPECT_EQ(Get("IsRunning"), "0");
  }
  peer.CutAt("");
  EXPECT_EQ(Outcome(Command(EXT_START_SIMULATOR)), "done");
  peer.ChangeWells([this](auto&) { peer.startDate[1] = 13; });
  EXPECT_EQ(Outcome(Command(EXT_START_SIMULATOR)),
            "Simulator communication error: <1/13/2015 is no date>");
}

TEST_F(Start, MarksTheWellsThatTheHostHasConnected) {
  StartSimulator();
  EXPECT_EQ(Outcome(StartRun({2, -1, 4, 1 << 30, 0})), "done");
  EXPECT_EQ(Told(), Texts{}) << "the host's date lies before the simulator's";
  EXPECT_EQ(Connected(), "P1 G1 ");
  SetConnectionRequest request = {.reserved = 0, .well = 3, .connected = 1};
  EXPECT_EQ(Outcome(Command(EXT_SET_CONNECTION, &request)), "done");
  EXPECT_EQ(Connected(), "P1 G1 X1 ");
  request.well = 4;
  EXPECT_EQ(Outcome(Command(EXT_SET_CONNECTION, &request)),
            "Handle passed to SetConnection() out of range");
}

TEST_F(Start, RunsUpToTheHostsDateInStepsOfAMonthWithoutOrders) {
  StartSimulator();
  EXPECT_EQ(StartRun({0}, kFieldStart + 65.05), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(), (Texts{"CONTINUE_UNTIL TIME{30}", "CONTINUE_UNTIL TIME{60}",
                                      "CONTINUE_UNTIL TIME{65.05000000000291}"}));
  EXPECT_EQ(Told(), Texts{"Running Intersect to Tessel start date"});
  EXPECT_EQ(StepBy(1.0), 0);
  EXPECT_EQ(peer.TakeOrders().front(),
            "SET SETWSTATUS WCLOSURE{USER} SETITEM{STATUS} WELNAMES{P1} "
            "VALUES{ALL_COMPLETIONS_SHUTIN}")
      << "the step after it sends its orders";
  peer.TakeOrders();
  EXPECT_EQ(StartRun({}, kFieldStart + 30.09), 0);
  EXPECT_EQ(peer.TakeOrders(), Texts{"CONTINUE_UNTIL TIME{30}"}) << "and leaves less than 0.1 days";
}

TEST_F(Start, FailsWhenTheSimulationEndsOnTheWayOrTheDateIsNone) {
  peer.endOfRun = 40.0;
  StartSimulator();
  EXPECT_EQ(Outcome(StartRun({}, kFieldStart + 65.0)), "The Intersect simulation ended");
  EXPECT_EQ(Outcome(StartRun({}, 1e12)), "The start date of the run is out of range");
}

TEST_F(Start, NoticesAProcessThatHasEnded) {
  StartSimulator();
  std::filesystem::remove(Case() / "hold");
  WaitUntilStopped();
  EXPECT_EQ(Outcome(StepBy(1.0)), "The simulation process is not running.");
  folder.Write("case/hold", "");
  EXPECT_EQ(Outcome(StartRun({0, 1})), "done");
  EXPECT_EQ(Outcome(StepBy(1.0)), "done");
}

TEST_F(Start, KeepsTheHostsMarksAndModesWhenItStartsTheSimulatorItself) {
  StartSimulator();
  Set("StaticWell[1].OpMode", "3");
  EXPECT_EQ(Command(EXT_CLOSE_SIMULATOR), 0);
  EXPECT_EQ(StartRun({1}), 0);
  EXPECT_EQ(Connected() + Get("StaticWell[{W1}].OpMode"), "W1 3");
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 0);
  EXPECT_EQ(Connected() + Get("StaticWell[{W1}].OpMode"), "3") << "a start by the host clears it";
}

TEST_F(Start, RefusesARunOnOtherWellsThanTheCases) {
  StartSimulator();
  Command(EXT_CLOSE_SIMULATOR);
  peer.ChangeWells([](std::vector<SimulatedWell>& wells) { wells.pop_back(); });
  EXPECT_TRUE(Outcome(StartRun({})).starts_with("The number of wells in this simulation deck"));
  EXPECT_EQ(Get("IsRunning"), "1") << "the host may reload";
  EXPECT_EQ(WellNames(), (Texts{"P1", "W1", "G1"}));
  Command(EXT_CLOSE_SIMULATOR);
  peer.ChangeWells([](std::vector<SimulatedWell>& wells) { std::swap(wells[0], wells[2]); });
  EXPECT_EQ(Outcome(StartRun({})), "done") << "two wells that change places are no difference";
}

class CompositionalStart : public Start {
 protected:
  CompositionalStart() {
    peer.components = {"N2", "METHANE", "A_NAME_THAT_IS_TOO_LONG", "C7+"};
    peer.binaryInteraction = {0.1, 0.2, 0.3, 0.4};
  }
};

TEST_F(CompositionalStart, DescribesTheFluid) {
  StartSimulator();
  EXPECT_EQ(Get("Compositional"), "1");
  auto fluid = std::make_unique<FluidModelRecord>();
  std::memset(fluid.get(), 0x55, sizeof *fluid);
  ASSERT_EQ(Command(EXT_GET_FLUID_MODEL, fluid.get()), 0);
  EXPECT_EQ(fluid->componentCount, 4);
  EXPECT_STREQ(fluid->names[1], "METHANE");
  EXPECT_EQ(std::string(fluid->names[2], 17), "A_NAME_THAT_IS_TC");
  EXPECT_EQ(fluid->mask, 16u);
  EXPECT_EQ(fluid->molecularWeight[3], 16.0);
  EXPECT_EQ(fluid->molecularWeight[4], 0.0);
  EXPECT_EQ(fluid->equationOfState, 1);
  const auto& bic = fluid->binaryInteraction;
  EXPECT_EQ((Numbers{bic[1][0], bic[2][0], bic[2][1], bic[3][0], bic[3][1], bic[0][1], bic[1][1]}),
            (Numbers{0.1, 0.2, 0.3, 0.4, 0, 0, 0}));
  EXPECT_EQ(fluid->reserved0, 0x55555555u) << "the host's own bytes stay";
  EXPECT_EQ(fluid->reserved2[99], 0x55);
  peer.CutAt("QRFLUIDMODEL");
  EXPECT_EQ(Command(EXT_START_SIMULATOR), 1);
  EXPECT_EQ(Command(EXT_GET_FLUID_MODEL, fluid.get()), 1)
      << "one that can't be read isn't that of the start before";
}

TEST_F(CompositionalStart, HasAFluidModelOfOneToAHundredComponents) {
  auto fluid = std::make_unique<FluidModelRecord>();
  peer.binaryInteraction.clear();
  NameCase();
  peer.Start();
  for (const auto& [components, result] : {std::pair{0u, 1}, {101u, 1}, {100u, 0}, {1u, 0}}) {
    peer.ChangeWells([&, count = components](auto&) { peer.components.assign(count, "C"); });
    ASSERT_EQ(Outcome(Command(EXT_START_SIMULATOR)), "done");
    EXPECT_EQ(Command(EXT_GET_FLUID_MODEL, fluid.get()), result) << components;
    EXPECT_EQ(Error(), "");
    Command(EXT_CLOSE_SIMULATOR);
  }
  EXPECT_EQ(Command(EXT_GET_FLUID_MODEL, nullptr), 1);
}

TEST_F(CompositionalStart, SetsUpGasInjectionWithAPlaceholder) {
  StartSimulator();
  EXPECT_EQ(Outcome(StartRun({0, 2})), "done");
  EXPECT_EQ(peer.TakeOrders(),
            (Texts{"SET CREATE_FLDSRCEXT WELLNAME{G1} STNAME{G1_ginj} STPHASE{GAS}",
                   "SET SETWSTRE STNAME{G1_ginj} STCMPVALUES{1, 0, 0, 0} "
                   "STCMPNAMES{TOTAL_MOLE_FRACTION[1], TOTAL_MOLE_FRACTION[2], "
                   "TOTAL_MOLE_FRACTION[3], TOTAL_MOLE_FRACTION[4]} STPHASE{}"}));
  Command(EXT_CLOSE_SIMULATOR);
  peer.CutAt("CREATE_FLDSRCEXT");
  EXPECT_EQ(Failure(StartRun({2})), "Connection to simulator failed (StartRun): ");
  peer.CutAt("");
  Command(EXT_CLOSE_SIMULATOR);
  app.Config.SimExecutable = std::string("2016.2") + platform::kPathSeparator + "ix";
  peer.TakeOrders();
  EXPECT_EQ(Outcome(StartRun({2})), "done");
  EXPECT_EQ(peer.TakeOrders(), (Texts{"CONTINUE"})) << "an older simulator knows no sources";
}

}  // namespace
}  // namespace gantry::test
