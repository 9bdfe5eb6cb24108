#include "flowlink/well_controls.h"

#include <gtest/gtest.h>

namespace gantry::flowlink {
namespace {

using simulator::WellConstraint;

HostControls Held(std::vector<WellConstraint> constraints, std::string status = "") {
  return {std::move(constraints), std::move(status), {}};
}

/// A well at 30 days, for which the deck has said this.
DeckWell WellAfter(const std::vector<std::string>& keywords,
                   std::map<std::string, double> limits = {}, bool isProducer = true) {
  std::vector<WellOrder> orders;
  for (const std::string& text : keywords) {
    const size_t end = text.find('\n');
    const DeckKeyword keyword{text.substr(0, end), "", {}, {{1, text.substr(end + 1)}}};
    for (WellOrder& order : OrdersOf(keyword, 10.0)) orders.push_back(std::move(order));
  }
  DeckWells wells({"W1"}, {{0.0, {{0, {isProducer, "OPEN", std::move(limits)}}}}}, orders);
  wells.GoTo(30.0);
  return wells[0];
}

/// flow tells 0 for a limit of 0 and for none.
TEST(WellControls, PutTheTighterOfHostAndDeckInItsColumn) {
  const std::map<std::string, double> told = {{"bhp_target", 1000.0},
                                              {"oil_rate", 20000.0},
                                              {"gas_rate", 0.0},
                                              {"water_rate", 0.0},
                                              {"thp_target", 70.0}};
  const DeckWell deck = WellAfter({"WCONPROD\n W? OPEN ORAT 20000 1* 0 2* 1000 70 3 0.5 /"}, told);
  const DeckWell retargeted = WellAfter({"WCONPROD\n W* OPEN ORAT 20000 4* 1000 /",
                                         "WELTARG\n 'W1' WRAT 0.0D0 /", "WELTARG\n W1 GUID 0 /"},
                                        told);
  const HostControls host =
      Held({{"LIQUID_PRODUCTION_RATE", 500, "USER"}, {"BOTTOM_HOLE_PRESSURE", 900, "USER"}});
  const std::vector<std::string> pressure = {"bottom_hole_pressure"};
  const std::vector<std::string> rates = {"oil_rate", "gas_rate", "water_rate"};
  const std::vector<std::string> tubing = {"tubing_head_pressure"};
  const struct {
    HeldByDeck kept;
    HostControls host;
    const char* columns;
  } cases[] = {
      {KeptLimits(deck, pressure), host, "LRAT 1* 1* 1* 500 1* 1000"},
      {KeptLimits(deck, rates), host, "LRAT 20000 1* 0 500 1* 900"},
      {KeptLimits(retargeted, rates), host, "LRAT 20000 0 1* 500 1* 900"},
      {KeptLimits(deck, tubing), host, "LRAT 1* 1* 1* 500 1* 900 70 3 0.5"},
      {AllLimits(deck), Held({}, "OPEN"), "ORAT 20000 1* 0 1* 1* 1000 70 3 0.5"},
      {AllLimits(WellAfter({"WCONHIST\n W1 OPEN ORAT 20000 5 6 /"}, told)), Held({}, "OPEN"),
       "ORAT 20000 1* 1* 1* 1* 1*"},
  };
  for (const auto& [kept, held, columns] : cases) {
    EXPECT_EQ(ControlKeyword("W1", WellType::kProducer, held, kept),
              "WCONPROD\n'W1' OPEN " + std::string(columns) + " /\n/\n");
  }
}

TEST(WellControls, HoldAnInjectorFromAbove) {
  const HeldByDeck kept{{{"BOTTOM_HOLE_PRESSURE", 9014, "DECK"}}, "", "", ""};
  const HostControls host =
      Held({{"GAS_INJECTION_RATE", 1e5, "USER"}, {"BOTTOM_HOLE_PRESSURE", 9500, "USER"}});
  EXPECT_EQ(ControlKeyword("I", WellType::kGasInjector, host, kept),
            "WCONINJE\n'I' GAS OPEN RATE 100000 1* 9014 /\n/\n");
  const std::string rates[] = {"gas_rate"};
  const DeckWell stopped = WellAfter({"WCONINJE\n W1 GAS OPEN RATE 0 1* 4000 /"},
                                     {{"surf_inj_rate", 0.0}, {"bhp_target", 4000.0}}, false);
  EXPECT_TRUE(stopped.isHeldAtNothing);
  EXPECT_EQ(ControlKeyword("W1", stopped.kind, host, KeptLimits(stopped, rates)),
            "WCONINJE\n'W1' GAS OPEN RATE 0 1* 9500 /\n/\n");
}

TEST(WellControls, FollowWhatTheDeckMakesOfAWell) {
  const auto at = [](double days, const char* name, const char* record) {
    return OrdersOf({name, "", {}, {{1, record}}}, days).front();
  };
  DeckWells wells({"W", "V"}, {{0.0, {{0, {false, "OPEN", {}}}, {1, {false, "OPEN", {}}}}}},
                  {at(0, "WCONINJE", "W WATER /"), at(5, "WECON", "* 10 /"),
                   at(10, "WELOPEN", "W OPEN /"), at(20, "WCONINJE", "W GAS /")});
  wells.GoTo(12);
  EXPECT_EQ(wells[0].kind, WellType::kWaterInjector);
  EXPECT_TRUE(wells[0].hasEconomicLimit && wells[1].hasEconomicLimit);
  EXPECT_EQ(wells.ChangeOfKind(0)->days, 20);
  EXPECT_EQ(wells.LastOrder(0, 5, 12)->keyword, "WELOPEN");
  EXPECT_EQ(wells.LastOrder(0, 0, 9), nullptr) << "an economic limit holds no well";
  wells.GoTo(25);
  EXPECT_EQ(wells[0].kind, WellType::kGasInjector);
  EXPECT_EQ(wells.ChangeOfKind(0), nullptr);
  wells.GoTo(1);
  EXPECT_FALSE(wells[0].hasEconomicLimit);
  EXPECT_TRUE(OrdersOf({"WELOPEN", "", {}, {{1, "W SHUT 0 0 3 /"}}}, 0).empty())
      << "only a connection";
}

TEST(WellControls, ShutAWellOnlyWhenTheHostWantsNothingOfIt) {
  const auto keyword = [](const HostControls& host) {
    return ControlKeyword("P", WellType::kProducer, host, {});
  };
  const WellConstraint noGas{"GAS_PRODUCTION_RATE", 0, "USER"};
  const WellConstraint noLiquid{"LIQUID_PRODUCTION_RATE", 0, "USER"};
  const WellConstraint liquid{"LIQUID_PRODUCTION_RATE", 7, "USER"};
  EXPECT_EQ(keyword(Held({noGas, liquid})), "WCONPROD\n'P' OPEN LRAT 1* 1* 1* 7 1* 1* /\n/\n");
  EXPECT_NE(keyword(Held({noGas, noLiquid})).find("SHUT"), std::string::npos);
  EXPECT_NE(keyword(Held({liquid}, "SURFACE_SHUTIN")).find("SHUT"), std::string::npos);
  const std::vector<WellConstraint> both = {liquid, {"GAS_PRODUCTION_RATE", 3, "USER"}};
  EXPECT_EQ(keyword(Held(InFluids(both, {true, false, true}))),
            "WCONPROD\n'P' OPEN ORAT 7 1* 3 1* 1* 1* /\n/\n");
  EXPECT_EQ(keyword(Held(InFluids(both, {false, true, false}))),
            "WCONPROD\n'P' OPEN WRAT 1* 7 1* 1* 1* 1* /\n/\n");
}

TEST(WellControls, RefuseALimitThatFlowCantHold) {
  EXPECT_THROW(CheckConstraint("OIL_PRODUCTION_RATE", WellType::kGasInjector, "I"),
               simulator::RequestRefused);
}

}  // namespace
}  // namespace gantry::flowlink
