// What the host sees when a simulator goes wrong, and that the same model runs again afterwards.

#include <fstream>
#include <thread>

#include <gtest/gtest.h>

#include "client/tcp_connection.h"
#include "integration/real_run.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

using fieldrun::DriverModel;

constexpr const char* kExample = "five_spot/FIVE_SPOT.afi";

class Failure : public ::testing::Test {
 protected:
  std::string StartFailure() {
    return Raised([&] { model_->StartSimulator(); });
  }

  /// The same model, with the machine's own simulator and a sound deck.
  void ExpectToRunAgain() {
    EXPECT_EQ(model_->Get("Intersect.IsRunning"), "0");
    model_->Set("Intersect.CaseDetails.SimExeName", "");
    model_->Set("Intersect.CaseDetails.FileName", deck_.string());
    ASSERT_EQ(StartRunOfAllWells(*model_).size(), 5u);
    model_->ReadWells();
    EXPECT_EQ(model_->Inflow(0).points.size(), 10u);
    EXPECT_TRUE(model_->Step(30.0));
  }

  RealRun run_;
  std::filesystem::path deck_ = run_.Deck(kExample, 100.0);
  std::unique_ptr<DriverModel> model_ = run_.Model(deck_);
};

TEST_F(Failure, OfAMissingOrUnusableSimulatorIsToldAtOnce) {
  const std::filesystem::path plain = run_.Folder().Write("plain", "#!/bin/sh\n");
  for (const auto& simulator : {run_.Folder() / "missing", plain, run_.Folder().Path()}) {
    model_->Set("Intersect.CaseDetails.SimExeName", simulator.string());
    EXPECT_EQ(StartFailure(),
              "exception: Could not start the simulator process: <Could not start IX process>")
        << simulator;
  }
  ExpectToRunAgain();
}

const std::string kStart = "exception: Could not start the simulator process: <Abnormal error: ";

TEST_F(Failure, OfASimulatorGoneWrongEndsTheStartWithAReasonAndNothingIsLost) {
  const std::vector<std::pair<std::string, std::string>> faults = {
      {"closes", "read: "},
      {"garbage", "Incorrect length in header (received: "},
      {"refuses", "no licence>"},
      {"vanishes", "read: "}};
  for (const auto& [fault, reason] : faults) {
    model_->Set("Intersect.CaseDetails.SimExeName", RealRun::FaultySimulator());
    model_->Set("Intersect.CaseDetails.FileName", (run_.Folder() / (fault + ".afi")).string());
    EXPECT_TRUE(StartFailure().starts_with(kStart + reason)) << fault;
    EXPECT_EQ(model_->Get("Intersect.IsRunning"), "0");
  }
  ExpectToRunAgain();
}

/// The wells of a simulator that another run has left behind would be those of another deck.
TEST_F(Failure, IsNotMadeByTakingAStrangerOnThePortForTheSimulator) {
  auto stranger = std::make_unique<TcpListener>(static_cast<uint16_t>(run_.FirstPort()));
  std::jthread leaves([&] {
    EXPECT_EQ(stranger->Accept(1), nullptr) << "nobody may knock there";
    stranger.reset();
  });
  model_->Set("Intersect.CaseDetails.SimExeName", RealRun::FaultySimulator());
  model_->Set("Intersect.CaseDetails.FileName", (run_.Folder() / "patient.afi").string());
  EXPECT_EQ(StartFailure(), kStart + "no licence>");
  leaves.join();
  ExpectToRunAgain();
}

TEST_F(Failure, OfADeckWhoseWellsHaveChangedLeavesTheModelUsable) {
  model_->StartSimulator();
  model_->CloseSimulator();
  std::string text = TestFolder::Read(deck_);
  text.replace(text.find("\"P4\""), 4, "\"P9\"");
  const std::filesystem::path changed = run_.Folder().Write("changed/FIVE_SPOT.afi", text);
  model_->Set("Intersect.CaseDetails.FileName", changed.string());
  EXPECT_EQ(Raised([&] { model_->StartRun({0}, 0.0, [](const std::string&) {}); }),
            "exception: Well 'P9' is not known in the Tessel model - refresh the model by starting "
            "the simulation from the data entry screen");
  model_->CloseSimulator();
  ExpectToRunAgain();
}

}  // namespace
}  // namespace gantry::test
