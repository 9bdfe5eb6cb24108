#include "flowlink/well_controls.h"

#include <gtest/gtest.h>

namespace gantry::flowlink {
namespace {

using simulator::WellConstraint;

HostControls Held(std::vector<WellConstraint> constraints, std::string status = "") {
  return {std::move(constraints), std::move(status), {}};
}

TEST(WellControls, PutTheTighterOfHostAndDeckInItsColumn) {
  DeckWell deck;
  deck.limits = {{"bhp_target", 1000.0}, {"oil_rate", 20000.0}};
  const std::string onlyPressure[] = {"bottom_hole_pressure"};
  const std::string both[] = {"bottom_hole_pressure", "oil_rate"};
  const HostControls host =
      Held({{"LIQUID_PRODUCTION_RATE", 500, "USER"}, {"BOTTOM_HOLE_PRESSURE", 900, "USER"}});
  EXPECT_EQ(ControlKeyword("P", WellKind::kProducer, host,
                           KeptLimits(deck, WellKind::kProducer, onlyPressure)),
            "WCONPROD\n'P' OPEN LRAT 1* 1* 1* 500 1* 1000 /\n/\n");
  EXPECT_EQ(
      ControlKeyword("P", WellKind::kProducer, host, KeptLimits(deck, WellKind::kProducer, both)),
      "WCONPROD\n'P' OPEN LRAT 20000 1* 1* 500 1* 1000 /\n/\n");
}

TEST(WellControls, HoldAnInjectorFromAbove) {
  const WellConstraint kept[] = {{"BOTTOM_HOLE_PRESSURE", 9014, "DECK"}};
  const HostControls host =
      Held({{"GAS_INJECTION_RATE", 1e5, "USER"}, {"BOTTOM_HOLE_PRESSURE", 9500, "USER"}});
  EXPECT_EQ(ControlKeyword("I", WellKind::kGasInjector, host, kept),
            "WCONINJE\n'I' GAS OPEN RATE 100000 1* 9014 /\n/\n");
}

TEST(WellControls, ShutAWellOnlyWhenTheHostWantsNothingOfIt) {
  const auto keyword = [](const HostControls& host) {
    return ControlKeyword("P", WellKind::kProducer, host, {});
  };
  const WellConstraint noGas{"GAS_PRODUCTION_RATE", 0, "USER"};
  const WellConstraint noLiquid{"LIQUID_PRODUCTION_RATE", 0, "USER"};
  const WellConstraint liquid{"LIQUID_PRODUCTION_RATE", 7, "USER"};
  EXPECT_EQ(keyword(Held({noGas, liquid})), "WCONPROD\n'P' OPEN LRAT 1* 1* 1* 7 1* 1* /\n/\n");
  EXPECT_NE(keyword(Held({noGas, noLiquid})).find("SHUT"), std::string::npos);
  EXPECT_NE(keyword(Held({liquid}, "SURFACE_SHUTIN")).find("SHUT"), std::string::npos);
}

TEST(WellControls, RefuseALimitThatFlowCantHold) {
  EXPECT_THROW(CheckConstraint("DRAWDOWN_PIW", WellKind::kProducer, "P"),
               simulator::RequestRefused);
  EXPECT_THROW(CheckConstraint("OIL_PRODUCTION_RATE", WellKind::kGasInjector, "I"),
               simulator::RequestRefused);
  EXPECT_NO_THROW(CheckConstraint("WATER_INJECTION_RATE", WellKind::kWaterInjector, "I"));
}

}  // namespace
}  // namespace gantry::flowlink
