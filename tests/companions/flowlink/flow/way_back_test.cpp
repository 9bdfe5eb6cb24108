// flow behind the interface of a simulator: back in time, uptime, wells that come later.

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "flowlink/flow_simulator.h"
#include "flowlink/link_fault.h"
#include "support/test_folder.h"

namespace gantry::flowlink::test {
namespace {

using simulator::RequestRefused;
using simulator::WellConstraint;

class FlowInTime : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::system("command -v flow >/dev/null") != 0) {
      GTEST_SKIP() << "flow isn't installed (Debian package libopm-simulators-bin)";
    }
  }
  void Start(const std::string& settings = "deck = \"FLOOD.DATA\"\n") {
    std::filesystem::copy(WATERFLOOD, folder_.Path());
    folder_.Write("FLOOD.afi", settings);
    flow_ = std::make_unique<FlowSimulator>(ReadLinkSettings(folder_ / "FLOOD.afi"), "FLOOD",
                                            folder_ / "FLOOD.flow");
    flow_->ContinueToFirstNewton();
  }
  size_t Well(const std::string& name) const {
    const auto& names = flow_->WellNames();
    return static_cast<size_t>(std::ranges::find(names, name) - names.begin());
  }
  double Number(const std::string& well, const std::string& item) {
    return flow_->WellNumber(Well(well), flow_->FindWellNumber(item).value());
  }
  void Limit(const std::string& well, const std::string& item, double value) {
    const WellConstraint limits[] = {{item, value, "USER"}};
    flow_->SetConstraints(Well(well), limits);
  }
  /// What P1 would give if nothing held it but its lowest pressure.
  double MostOfP1() {
    Limit("P1", "LIQUID_PRODUCTION_RATE", 1e5);
    return Number("P1", "OIL_PRODUCTION_RATE");
  }

  gantry::test::TestFolder folder_;
  std::unique_ptr<FlowSimulator> flow_;
};

void ExpectSame(double value, double before, const char* what) {
  EXPECT_NEAR(value, before, 1e-4 * before) << what;
}

TEST_F(FlowInTime, GoesBackToAStopAndOnFromThereAsBefore) {
  Start();
  flow_->ContinueUntil(31);
  const double pressure = Number("P1", "BOTTOM_HOLE_PRESSURE");
  const double total = Number("P1", "OIL_PRODUCTION_CUML");
  const double most = MostOfP1();
  Limit("P1", "LIQUID_PRODUCTION_RATE", 45);
  flow_->ContinueUntil(91);
  const double laterPressure = Number("P1", "BOTTOM_HOLE_PRESSURE");
  const double laterTotal = Number("P2", "OIL_PRODUCTION_CUML");
  EXPECT_LT(laterPressure, pressure - 2);
  EXPECT_GT(laterTotal, 0);

  flow_->ContinueUntil(20);
  EXPECT_NEAR(flow_->Position().days, 31, 0.001) << "the next stop";
  ExpectSame(Number("P1", "OIL_PRODUCTION_CUML"), total, "total");
  EXPECT_EQ(Number("P2", "OIL_PRODUCTION_CUML"), 0) << "P2 isn't drilled yet";
  ExpectSame(MostOfP1(), most, "inflow");
  Limit("P1", "LIQUID_PRODUCTION_RATE", 45);
  flow_->ContinueUntil(91);
  EXPECT_DOUBLE_EQ(flow_->Position().days, 91);
  ExpectSame(Number("P1", "BOTTOM_HOLE_PRESSURE"), laterPressure, "pressure");
  ExpectSame(Number("P2", "OIL_PRODUCTION_CUML"), laterTotal, "total of P2");

  // Once more, out of the second run.
  flow_->ContinueUntil(60);
  EXPECT_NEAR(flow_->Position().days, 60, 0.001);
  flow_->ContinueUntil(0);
  EXPECT_NEAR(flow_->Position().days, 0, 0.001);
  flow_->Shutdown();
  for (const char* run : {"FLOOD", "FLOOD_2", "FLOOD_3", "FLOOD_4"}) {
    EXPECT_TRUE(std::filesystem::exists(folder_ / "FLOOD.flow" / (std::string(run) + ".UNSMRY")));
  }
}

TEST_F(FlowInTime, HasItsFolderAloneAndNoWayBackWhereTheSettingsDenyIt) {
  folder_.Write("FLOOD.flow/LEFT.OVER", "of an earlier session");
  Start("deck = \"FLOOD.DATA\"\nway_back = false\n");
  EXPECT_FALSE(std::filesystem::exists(folder_ / "FLOOD.flow" / "LEFT.OVER"));
  EXPECT_THROW(
      FlowSimulator(ReadLinkSettings(folder_ / "FLOOD.afi"), "FLOOD", folder_ / "FLOOD.flow"),
      LinkFault)
      << "the folder is in use";
  flow_->ContinueUntil(60);
  EXPECT_THROW(flow_->ContinueUntil(20), RequestRefused);
  flow_->ContinueUntil(91);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "FLOOD.flow" / "FLOOD.UNRST"));
}

TEST_F(FlowInTime, CountsUptimeInTotalsAndNotInRates) {
  Start();
  Limit("P1", "OIL_PRODUCTION_RATE", 40);
  flow_->ContinueUntil(31);
  const double before = Number("P1", "OIL_PRODUCTION_CUML");
  flow_->SetUptime(Well("P1"), 0.25);
  flow_->ContinueUntil(60);
  EXPECT_NEAR(Number("P1", "OIL_PRODUCTION_RATE"), 40, 1e-3);
  EXPECT_NEAR(Number("P1", "OIL_PRODUCTION_CUML") - before, 0.25 * 40 * 29, 0.01);
  flow_->SetUptime(Well("P1"), 0.0);
  flow_->ContinueUntil(1e4);
  EXPECT_NEAR(Number("P1", "OIL_PRODUCTION_CUML") - before, 0.25 * 40 * 29, 0.01);
  EXPECT_EQ(flow_->Position().stop, simulator::Stop::kEndSimulate);
  EXPECT_DOUBLE_EQ(flow_->Position().days, 182) << "where the deck ends";
}

}  // namespace
}  // namespace gantry::flowlink::test
