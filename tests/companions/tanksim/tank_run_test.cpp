#include "tanksim/tank_run.h"

#include <cmath>

#include <gtest/gtest.h>

#include "sample_deck.h"

namespace gantry::simulator::test {
namespace {

/// The sample's three wells.
constexpr size_t kProducer = 0;
constexpr size_t kWaterInjector = 1;
constexpr size_t kGasInjector = 2;

Deck ExampleDeck(const std::string& file) {
  return ReadDeck(std::string(GANTRY_EXAMPLES) + "/" + file);
}

/// A deck whose producer is its only open well, so that the tank is depleted.
Deck DepletionDeck() {
  Deck deck = SampleDeck();
  deck.wells.resize(1);
  return deck;
}

TEST(Deck, GivesAKeyThatIsLeftOutItsUsualMeaning) {
  EXPECT_TRUE(SampleDeck().tanks[0].initial.gasRedissolves);
  std::string text = gantry::test::TestFolder::Read(GANTRY_EXAMPLES "/gas_cycling/GAS_CYCLING.afi");
  text += "[[well]]\nname = 'NEW'\ntank = '" + ReadDeckText(text, "").tanks[0].name +
          "'\ntype = 'gas_injector'\ninjectivity_index = 1.0\n"
          "maximum_bottom_hole_pressure = 9000.0\n";
  EXPECT_EQ(ReadDeckText(text, "").wells.back().injectedComposition,
            (std::vector<double>{1.0, 0.0, 0.0, 0.0, 0.0, 0.0}));
}

TEST(MaterialBalance, ClosesForOilGasAndWater) {
  const Deck deck = SampleDeck();
  TankRun run(deck);
  const Contents initial = run.Tanks()[0].Held();
  run.Wells()[kWaterInjector].SetControllerLimits({{LimitItem::kWaterInjection, 900.0}});
  run.Wells()[kGasInjector].SetControllerLimits({{LimitItem::kGasInjection, 400.0}});
  run.Wells()[kGasInjector].SetUptime(0.7);
  for (double day = 30.0; day <= 360.0; day += 30.0) run.AdvanceTo(day);
  const Contents& held = run.Tanks()[0].Held();
  const WellVolumes& produced = run.Wells()[kProducer].Totals();
  EXPECT_GT(produced.oil, 1e5);
  EXPECT_NEAR(run.Wells()[kGasInjector].Totals().injectedGas, 0.7 * 400.0 * 360.0, 1e-3);
  EXPECT_NEAR(held.hydrocarbons[0] + produced.oil, initial.hydrocarbons[0],
              1e-9 * initial.hydrocarbons[0]);
  EXPECT_NEAR(held.hydrocarbons[1] + produced.gas,
              initial.hydrocarbons[1] + run.Wells()[kGasInjector].Totals().injectedGas,
              1e-9 * initial.hydrocarbons[1]);
  EXPECT_NEAR(held.water + produced.water,
              initial.water + run.Wells()[kWaterInjector].Totals().injectedWater,
              1e-9 * initial.water);
  EXPECT_NEAR(run.Tanks()[0].ExcessVolume({}, 0.0, run.Tanks()[0].Pressure()), 0.0, 1.0);
}

TEST(MaterialBalance, FollowsTheCompressibilityOfUndersaturatedOil) {
  const Deck deck = DepletionDeck();
  TankRun run(deck);
  run.Wells()[kProducer].SetControllerLimits({{LimitItem::kOilProduction, 200.0}});
  run.AdvanceTo(100.0);
  // Produced reservoir volume = pore volume x (So co + Sw cw + cf) x pressure drop.
  const double total = 0.7 * 1.2e-5 + 0.3 * 3e-6 + 4e-6;
  const double withdrawn = run.Wells()[kProducer].Totals().reservoirProduction;
  const double drop = 3200.0 - run.Tanks()[0].Pressure();
  EXPECT_GT(drop, 30.0);
  EXPECT_NEAR(drop, withdrawn / (4e7 * total), 0.01 * drop);
}

TEST(MaterialBalance, GivesAStraightLineOfPressureOverDeviationForDryGas) {
  Deck deck = SampleDeck();
  deck.tanks[0].initial.waterSaturation = 0.2;  // at rest
  deck.tanks[0].initial.gasSaturation = 0.8;
  deck.tanks[0].rockCompressibility = 0.0;
  deck.blackOil.water.compressibility = 0.0;
  deck.wells.resize(1);
  deck.wells[0].indexIsOfGas = true;
  deck.wells[0].index = 1000.0;
  TankRun run(deck);
  const double gas = run.Tanks()[0].Held().hydrocarbons[1];
  const double expansion = run.Tanks()[0].State().vapour.gas;  // goes as p / z
  run.Wells()[kProducer].SetControllerLimits({{LimitItem::kGasProduction, 0.001 * gas}});
  for (const double day : {100.0, 200.0, 300.0}) {
    run.AdvanceTo(day);
    const double recovered = run.Wells()[kProducer].Totals().gas / gas;
    EXPECT_NEAR(recovered, 0.001 * day, 1e-6);
    EXPECT_NEAR(run.Tanks()[0].State().vapour.gas / expansion, 1.0 - recovered, 1e-6);
  }
}

TEST(MaterialBalance, HardlyDependsOnTheLengthOfTheSteps) {
  const Deck deck = SampleDeck();
  TankRun coarse(deck);
  coarse.AdvanceTo(360.0);
  TankRun fine(deck);
  for (double day = 1.0; day <= 360.0; day += 1.0) fine.AdvanceTo(day);
  EXPECT_NEAR(coarse.Tanks()[0].Pressure(), fine.Tanks()[0].Pressure(), 10.0);
  EXPECT_NEAR(coarse.Wells()[kProducer].Totals().oil / fine.Wells()[kProducer].Totals().oil, 1.0,
              0.01);
}

TEST(Tank, ShowsWaterAtItsProducersOnlyWhenTheFrontHasCome) {
  Deck deck = SampleDeck("displacement = \"front\"\nwater_sweep = 0.3");
  deck.tanks[0].initial.waterSaturation = 0.2;
  deck.tanks[0].initial.poreVolume = 1e7;
  TankRun run(deck);
  const Well& producer = run.Wells()[kProducer];
  double before = 0.0;
  for (double day = 20.0; day <= 400.0; day += 20.0) {
    run.AdvanceTo(day);
    const WellVolumes& rates = producer.Flow().rates;
    const double cut = rates.water / (rates.oil + rates.water);
    if (day <= 40.0) {
      EXPECT_EQ(cut, 0.0);
    }
    EXPECT_GE(cut, before);
    before = cut;
  }
  EXPECT_GT(before, 0.1);
  EXPECT_LT(before, 1.0);
}

TEST(GasCycling, ConservesEveryComponent) {
  const Deck deck = ExampleDeck("gas_cycling/GAS_CYCLING.afi");
  TankRun run(deck);
  const Amounts initial = run.Tanks()[0].Held().hydrocarbons;
  Well& injector = run.Wells()[2];
  run.Wells()[0].SetStatus(WellStatus::kSurfaceShut);
  run.Wells()[1].SetStatus(WellStatus::kSurfaceShut);
  injector.SetControllerLimits({{LimitItem::kGasInjection, 20000.0}});
  run.AdvanceTo(100.0);
  // A lb-mol is 379.5 ft3 of gas at standard conditions.
  const double moles = 20000.0 * 100.0 / 0.37949;
  for (size_t i = 0; i < initial.size(); ++i) {
    EXPECT_NEAR(run.Tanks()[0].Held().hydrocarbons[i] - initial[i],
                moles * injector.InjectedComposition()[i], 1e-4 * moles);
  }
  EXPECT_GT(run.Tanks()[0].Pressure(), 4500.0);
}

}  // namespace
}  // namespace gantry::simulator::test
