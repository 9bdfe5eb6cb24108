// How the simulator's process is launched on this machine.

#include "model/model_fixture.h"

namespace gantry::test {
namespace {

class Launch : public ModelTest {
 protected:
  std::string PortOption() const {
    return "--dopt=external_controller_port:" + std::to_string(peer.Port()) + "\n";
  }
};

TEST_F(Launch, PutsAParallelRunUnderMpiexec) {
  app.Config.MPIExecutable = HELD_SIMULATOR;
  Set("CaseDetails.Parallel", "4");
  StartSimulator();
  EXPECT_EQ(Arguments(),
            std::string("-localonly\n-np\n4\n") + HELD_SIMULATOR + "\nFIELD\n" + PortOption());
}

TEST_F(Launch, NeedsMpiexecForAParallelRun) {
  app.Config.MPIExecutable = "   ";
  Set("CaseDetails.Parallel", "2");
  NameCase();
  EXPECT_EQ(Command(23), 1);
  EXPECT_EQ(Error(),
            "Could not start the simulator process: <A path to mpiexec must be entered in the "
            "configuration screen to run parallel jobs>");
}

TEST_F(Launch, TakesTheMachinesSimulatorWhereTheCaseNamesNone) {
  app.Config.SimExecutable = HELD_SIMULATOR;
  app.Config.CmdLine = "   ";
  NameCase();
  Set("CaseDetails.SimExeName", "");
  peer.Start();
  ASSERT_EQ(Command(23), 0) << Error();
  EXPECT_EQ(Arguments(), "FIELD\n" + PortOption());
}

TEST_F(Launch, FollowsTheMachinesVersionInTheConnector) {
  app.Config.SimExecutable = "/IX/2016.2/ix";
  peer.wells = {{.name = "G1", .type = "GAS_INJECTOR"}};
  peer.components = {"C1"};
  StartSimulator();
  ASSERT_EQ(StartRun({0}), 0) << Error();
  EXPECT_EQ(peer.TakeOrders(), Texts{}) << "the older simulator knows no injection sources";
}

TEST_F(Launch, GivesAPortBackWithItsSession) {
  StartSimulator();
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Command(56), 0);
    ASSERT_EQ(Command(23), 0) << Error();
  }
}

}  // namespace
}  // namespace gantry::test
