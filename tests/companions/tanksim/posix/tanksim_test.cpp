// The program itself. What it does when its controller goes is a rule of `fieldrun check`.

#include <future>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "client/tcp_connection.h"
#include "client/v2017_2/intersect_client.h"
#include "program.h"
#include "sample_deck.h"
#include "support/free_ports.h"

namespace gantry::simulator::test {
namespace {

using fieldrun::test::Outcome;

/// However busy the machine is, the program is up by then.
constexpr uint32_t kPatienceSeconds = 60;

class Tanksim : public testing::Test {
 protected:
  void SetUp() override { folder.Write("CASE.afi", SampleDeckText()); }

  /// The program, once it has ended, with this option for a controller on that port.
  std::future<Outcome> Start(const std::string& option, uint16_t at) const {
    const std::string portOption = fmt::format("--dopt=external_controller_port:{}", at);
    return std::async(std::launch::async, [=, this] {
      return fieldrun::test::RunInFolder(folder, "tanksim",
                                         {"CASE", "--dopt=" + option, portOption});
    });
  }

  gantry::test::TestFolder folder;
  const uint16_t port = static_cast<uint16_t>(gantry::test::FreePorts());
};

TEST_F(Tanksim, RunsToAShutdownAndLogsItsMessagesOnlyWhenAsked) {
  for (const char* const option : {"other_tool:fast", "external_controller_logger"}) {
    EXPECT_FALSE(std::filesystem::exists(folder / "CASE.ecreplay"));
    auto simulator = Start(option, port);
    v2017_2::IntersectClient client;
    client.connect("localhost", port, kPatienceSeconds);
    client.query_wells({"P"}, {"UPTIME_FRACTION"});
    client.continue_simulation();
    client.shutdown();
    const Outcome outcome = simulator.get();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out + outcome.err, "");
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

TEST_F(Tanksim, EndsWhenItsPortIsTaken) {
  const TcpListener other(0);
  EXPECT_EQ(
      Start("other_tool:fast", other.Port()).get().err,
      fmt::format("tanksim: can't listen on port {}: Address already in use\n", other.Port()));
}

}  // namespace
}  // namespace gantry::simulator::test
