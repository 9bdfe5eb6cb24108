#include "client/v2016_2/intersect_client.h"

#include <gtest/gtest.h>

#include "client/v2017_2/intersect_client.h"
#include "support/scripted_peer.h"

namespace gantry {
namespace {

using test::Ints;
using test::Numbers;
using test::ScriptedPeer;
using test::Step;
using test::Texts;

constexpr uint32_t kTimeout = 5;

TEST(Session, FollowsThePositionsThatTheSimulatorReports) {
  ScriptedPeer peer;
  peer.Greet()
      .Expect({"CONTINUE", "END"})
      .Reply(Step("BEGIN_NEWTON"))
      .Expect({"CONTINUE_UNTIL", {"TIME", Numbers{31.5}}, "END"})
      .Reply(Step("BEGIN_NEWTON", 31.5))
      .Expect({"SHUTDOWN", "END"})
      .Reply({"FINISHED", "END"})
      .Start();
  v2016_2::IntersectClient client;
  client.connect("localhost", peer.Port(), kTimeout);
  EXPECT_EQ(client.position(), AlgorithmicPosition::MODEL_DEFINITION);
  client.continue_simulation();
  EXPECT_EQ(client.position(), AlgorithmicPosition::BEGIN_NEWTON);
  client.continue_simulation_until(31.5);
  EXPECT_EQ(client.time(), 31.5);
  EXPECT_EQ(client.date(), (std::array<int32_t, 6>{2020, 1, 1, 0, 0, 0}));
  client.shutdown();
  EXPECT_EQ(client.position(), AlgorithmicPosition::END_SIMULATE);
  EXPECT_EQ(client.time(), 31.5) << "FINISHED carries no time";
}

}  // namespace
}  // namespace gantry
