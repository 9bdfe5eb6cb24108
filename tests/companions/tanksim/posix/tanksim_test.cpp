// The program itself: its command line, its exit codes, its way with a controller that goes.

#include <cstdlib>
#include <future>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include "client/tcp_connection.h"
#include "client/v2017_2/intersect_client.h"
#include "sample_deck.h"
#include "simulator_side/driver_arguments.h"
#include "support/free_ports.h"
#include "support/test_folder.h"

namespace gantry::simulator::test {
namespace {

struct Outcome {
  int exitCode = -1;
  std::string output;
  std::string errors;
};

/// However busy the machine is, the program is up by then.
constexpr uint32_t kPatienceSeconds = 60;

uint16_t FreePort() { return static_cast<uint16_t>(gantry::test::FreePorts()); }

class Tanksim : public testing::Test {
 protected:
  Outcome Run(const std::string& arguments) const {
    const std::string command = fmt::format("cd '{0}' && '{1}' {2} >out.txt 2>err.txt",
                                            folder.Path().string(), GANTRY_TANKSIM, arguments);
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.Read(folder / "out.txt"),
            folder.Read(folder / "err.txt")};
  }
  std::future<Outcome> Start(const std::string& arguments) const {
    return std::async(std::launch::async, [=, this] { return Run(arguments); });
  }
  static std::string PortOption(uint16_t port) {
    return fmt::format("--dopt=external_controller_port:{}", port);
  }
  /// Of a run that ends with status 1.
  std::string ErrorsOf(const std::string& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 1) << arguments;
    return outcome.errors;
  }
  void SetUp() override { folder.Write("CASE.afi", SampleDeckText()); }

  gantry::test::TestFolder folder;
};

TEST_F(Tanksim, RunsToAShutdownAndLogsItsMessagesOnlyWhenAsked) {
  for (const char* const option : {"--dopt=other_tool:fast", "--dopt=external_controller_logger"}) {
    const uint16_t port = FreePort();
    EXPECT_FALSE(std::filesystem::exists(folder / "CASE.ecreplay"));
    auto simulator = Start(fmt::format("CASE {} {}", PortOption(port), option));
    v2017_2::IntersectClient client;
    client.connect("localhost", port, kPatienceSeconds);
    client.query_wells({"P"}, {"UPTIME_FRACTION"});
    client.continue_simulation();
    client.shutdown();
    const Outcome outcome = simulator.get();
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output + outcome.errors, "");
  }
  EXPECT_EQ(folder.Read(folder / "CASE.ecreplay"),
            "< SETUP VERSION[1] \"V2\" END\n"
            "> STARTED ERRORS[0] END\n"
            "> STEP POSITION[1] \"MODEL_DEFINITION\" TIME[1] 0 DATE[6] 2020 1 31 0 0 0 END\n"
            "< QUERY QWELLS QITEMS[1] \"UPTIME_FRACTION\" WELNAMES[1] \"P\" END\n"
            "> REPLY QITEMS[1] \"UPTIME_FRACTION\" WELLNAME[1] \"P\" VALUES[1] 1 END\n"
            "> READY END\n"
            "< CONTINUE END\n"
            "> STEP POSITION[1] \"BEGIN_NEWTON\" TIME[1] 0 DATE[6] 2020 1 31 0 0 0 END\n"
            "< SHUTDOWN END\n"
            "> FINISHED END\n");
}

TEST_F(Tanksim, EndsWhenItsControllerGoes) {
  const uint16_t port = FreePort();
  auto simulator = Start("CASE " + PortOption(port));
  {
    v2017_2::IntersectClient client;
    client.connect("localhost", port, kPatienceSeconds);
  }
  const Outcome outcome = simulator.get();
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_NE(outcome.errors.find("the controller has gone without a shutdown"), std::string::npos);
}

TEST_F(Tanksim, EndsWhenNoControllerComesOrItsPortIsTaken) {
  const TcpListener other(0);
  EXPECT_EQ(
      ErrorsOf("CASE " + PortOption(other.Port())),
      fmt::format("tanksim: can't listen on port {}: Address already in use\n", other.Port()));
  const uint16_t port = FreePort();
  EXPECT_EQ(ErrorsOf("CASE --dopt=external_controller_wait:0 " + PortOption(port)),
            fmt::format("tanksim: no controller came to port {} within 0 seconds\n", port));
  EXPECT_EQ(DriverArguments{}.secondsForController, 20) << "where the command line names none";
}

TEST_F(Tanksim, TellsWhereADeckIsBadWithARunOrWithout) {
  const struct {
    std::string deck, fault;
  } kDecks[] = {
      {"units = \"feld\"\n",
       "CASE.afi:1: 'units' must be \"field\" or \"metric\"; did you mean \"field\"?\n"},
      {SampleDeckText(false, "gas_saturation = 0.7"),
       "CASE.afi:25: the index of well 'P' is of oil, which its tank doesn't hold\n"},
  };
  for (const auto& [deck, fault] : kDecks) {
    folder.Write("CASE.afi", deck);
    EXPECT_EQ(ErrorsOf("CASE " + PortOption(FreePort())), fault);
    const Outcome check = Run("--check CASE.afi");
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_EQ(check.output, fault);
  }
  SetUp();
  const Outcome good = Run("--check CASE.afi");
  EXPECT_EQ(good.output + good.errors, "");
  EXPECT_EQ(good.exitCode, 0);
  EXPECT_EQ(ErrorsOf("MISSING " + PortOption(FreePort())),
            "MISSING.afi:1: the deck can't be read\n");
}

TEST_F(Tanksim, RefusesABadCommandLine) {
  const std::string commandLines[] = {"",
                                      "CASE",
                                      "CASE --dopt=external_controller_port",
                                      "CASE --dopt=external_controller_port:0",
                                      "CASE --dopt=external_controller_port:70000",
                                      "CASE --dopt=external_controller_port:90x",
                                      "CASE OTHER --dopt=external_controller_port:9001",
                                      "CASE --fast --dopt=external_controller_port:9001"};
  for (const std::string& arguments : commandLines) {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.exitCode, 2) << arguments;
    EXPECT_EQ(outcome.errors.substr(0, 9), "tanksim: ") << arguments;
  }
}

TEST_F(Tanksim, TellsItsUseAndVersion) {
  EXPECT_EQ(Run("--help").exitCode, 0);
  EXPECT_NE(Run("--help").output.find("external_controller_port"), std::string::npos);
  EXPECT_NE(Run("--deck-keys").output.find("gas_productivity_index"), std::string::npos);
  EXPECT_EQ(Run("--deck-keys").exitCode, 0);
  EXPECT_EQ(Run("--version").output.substr(0, 8), "tanksim ");
}

}  // namespace
}  // namespace gantry::simulator::test
