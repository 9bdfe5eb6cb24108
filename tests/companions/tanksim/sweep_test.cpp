#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "sample_deck.h"
#include "served_simulator.h"
#include "support/talk.h"

namespace gantry::simulator::test {
namespace {

constexpr double kReservoirPressure = 3200.0 - 14.696;  // psig, of the sample

/// What a host learns of the sample deck after that many days, in the host's units.
std::vector<ConnectorWellRecord> Measure(Deck deck, double days) {
  ServedSimulator simulator(std::move(deck));
  const auto connector = CreateLocalConnector(kMostRecentVersion, simulator.Port());
  connector->AdvanceNewton();
  connector->RunUntil(days);
  std::vector<ConnectorWellRecord> records;
  connector->GetWellDataAndIPR(0, {"P", "W", "G"}, records, true, 2.5);
  connector->Shutdown();
  return records;
}

TEST(Sweep, GivesCurvesThatRiseInPressureAsTheyFallInRate) {
  const auto records = Measure(SampleDeck(), 0);
  for (const ConnectorWellRecord& well : records) {
    SCOPED_TRACE(well.name);
    ASSERT_EQ(well.iprPressure.size(), 10u);
    const bool produces = well.name == "P";
    EXPECT_TRUE(produces ? std::is_sorted(well.iprPressure.begin(), well.iprPressure.end())
                         : std::is_sorted(well.iprPressure.rbegin(), well.iprPressure.rend()));
    for (const auto* rates : {&well.iprOilRate, &well.iprGasRate, &well.iprWaterRate}) {
      EXPECT_TRUE(std::is_sorted(rates->rbegin(), rates->rend()));
    }
    EXPECT_NEAR(well.iprPressure.back(), kReservoirPressure, 20.0);
  }
  const ConnectorWellRecord& producer = records.front();
  double cutBefore = 1.0;
  for (size_t i = 0; i < producer.iprPressure.size(); ++i) {
    EXPECT_NEAR(producer.iprGasRate[i] / producer.iprOilRate[i], 0.0006, 1e-9);  // 0.6 Mscf/stb
    const double water = producer.iprWaterRate[i];
    const double cut = water / (water + producer.iprOilRate[i]);
    EXPECT_LE(cut, cutBefore + 1e-12) << "it grows with the drawdown";
    cutBefore = cut;
  }
}

TEST(Sweep, GivesTheSameInBothUnitSystems) {
  const auto field = Measure(SampleDeck(false), 200);
  const auto metric = Measure(SampleDeck(true), 200);
  ASSERT_EQ(field.size(), metric.size());
  for (size_t i = 0; i < field.size(); ++i) {
    SCOPED_TRACE(field[i].name);
    for (const auto curve :
         {&ConnectorWellRecord::iprPressure, &ConnectorWellRecord::iprOilRate,
          &ConnectorWellRecord::iprGasRate, &ConnectorWellRecord::iprWaterRate,
          &ConnectorWellRecord::iprTemperature, &ConnectorWellRecord::iprOilDensity,
          &ConnectorWellRecord::iprGasDensity}) {
      const auto isNear = [](double a, double b) {
        return std::abs(a - b) <= 1e-6 * (1.0 + std::abs(a));
      };
      EXPECT_TRUE(std::ranges::equal(field[i].*curve, metric[i].*curve, isNear));
    }
    EXPECT_NEAR(field[i].tubingHeadPressure, metric[i].tubingHeadPressure, 1e-4);
  }
}

TEST(Sweep, GivesMoleFractionsOfWhatACompositionalWellFlows) {
  ServedSimulator simulator(
      ReadDeck(std::string(GANTRY_EXAMPLES) + "/gas_cycling/GAS_CYCLING.afi"));
  const auto connector = CreateLocalConnector(kMostRecentVersion, simulator.Port());
  EXPECT_TRUE(connector->GetCompositionalFlag());
  EOSProperties eos;
  connector->GetEOSProperties(eos);
  EXPECT_EQ(eos.componentCount, 6);
  EXPECT_EQ(eos.presentProperties, 1u | 2u | 4u | 8u | 16u | 64u | 128u | 256u | 512u | 1024u);
  EXPECT_EQ(eos.binaryInteraction.size(), 15u);
  connector->AdvanceNewton();
  EXPECT_TRUE(connector->SetInjectionSource("GI1", "GI1_ginj"));
  EXPECT_FALSE(connector->SetInjectionSource("GP1", "GP1_ginj"));
  connector->SetWellInjectionComposition({"GI1_ginj"}, {{0.0, 3.0, 1.0, 0.0, 0.0, 0.0}});
  std::vector<ConnectorWellRecord> records;
  connector->GetWellDataAndIPR(6, {"GP1", "GI1"}, records, true, 2.5);
  for (size_t i = 0; i < 10; ++i) EXPECT_NEAR(records[0].iprComposition[i][1], 0.72, 1e-9);
  EXPECT_EQ(gantry::test::LineOf(records[1].iprComposition[0]), "0 0.75 0.25 0 0 0");
  EXPECT_ANY_THROW(connector->SetWellInjectionComposition({"GI1_ginj"}, {Doubles(6, 0.0)}));
  EXPECT_EQ(simulator.Failure(), "The mole fractions of GI1_ginj don't add up");
}

}  // namespace
}  // namespace gantry::simulator::test
