// Several sessions of one module, and their ports.

#include <thread>

#include <gtest/gtest.h>

#include "client/tcp_connection.h"
#include "integration/real_run.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

using fieldrun::DriverModel;

constexpr const char* kExample = "five_spot/FIVE_SPOT.afi";

double ElapsedDays(DriverModel& model) {
  return std::stod(model.Get("Intersect.CurrentElapsedDays"));
}

TEST(Sessions, RunBesideEachOtherOnAsManyPortsAsThereAre) {
  RealRun run("2016.2", 2);  // the older version; the examples go through the newer one
  auto first = run.Model(run.Deck(kExample, 200.0));
  const auto second = run.Model(run.Deck(kExample, 200.0));
  const auto third = run.Model(run.Deck(kExample, 200.0));
  StartRunOfAllWells(*first);
  StartRunOfAllWells(*second);
  for (int step = 0; step < 2; ++step) {
    for (DriverModel* model : {first.get(), second.get()}) {
      model->ReadWells();
      EXPECT_EQ(model->Inflow(0).points.size(), 10u);
    }
    EXPECT_TRUE(first->Step(30.0));
    EXPECT_TRUE(second->Step(10.0));
  }
  EXPECT_EQ(ElapsedDays(*first), 60.0);
  EXPECT_EQ(ElapsedDays(*second), 20.0);
  EXPECT_EQ(
      Raised([&] { third->StartSimulator(); }),
      "exception: Could not start the simulator process: <Tessel has run out of network ports "
      "to use for the connection to Intersect. Check Intersect configuration settings.>");
  first.reset();
  third->StartSimulator();
  EXPECT_EQ(third->Wells().size(), 5u);
}

/// The wells of a simulator that another run has left behind would be those of another deck.
TEST(Sessions, DontTakeAStrangerOnThePortForTheirSimulator) {
  RealRun run;
  const auto model = run.Model(run.Deck(kExample, 100.0), GANTRY_PATIENT_SIMULATOR);
  auto stranger = std::make_unique<TcpListener>(static_cast<uint16_t>(run.FirstPort()));
  std::jthread leaves([&] {
    EXPECT_EQ(stranger->Accept(1), nullptr) << "nobody may knock there";
    stranger.reset();
  });
  const std::string failure = Raised([&] { model->StartSimulator(); });
  EXPECT_TRUE(failure.starts_with(
      "exception: Could not start the simulator process: <Abnormal error: read: "))
      << failure;
  leaves.join();
  model->Set("Intersect.CaseDetails.SimExeName", "");
  EXPECT_EQ(StartRunOfAllWells(*model).size(), 5u);
}

}  // namespace
}  // namespace gantry::test
