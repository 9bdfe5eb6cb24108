// The exchange of one well with the host's network.

#include <cmath>

#include "model/model_fixture.h"

namespace gantry::test {
namespace {

class Inflow : public ModelTest {
 protected:
  Inflow() {
    peer.wells = {{.name = "P1"},
                  {.name = "W1", .type = "WATER_INJECTOR"},
                  {.name = "S1", .status = "SURFACE_SHUTIN"}};
    std::memset(inflow.get(), 0x7e, sizeof *inflow);
  }
  void ReadAll() { ReadWells({0, 1, 2}); }
};

/// That of the lowest rate of a sweep, which is nearest to a well that has not flowed yet.
const double kOpenGravity = OilGravityAt(1000.0 * std::pow(0.1, 2.5));

TEST_F(Inflow, GivesTheSweepOfAProducer) {
  ReadAll();
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(inflow->isShut, 0);
  ASSERT_EQ(inflow->pointCount, 10);
  EXPECT_DOUBLE_EQ(inflow->oilRate[0], 800.0);
  EXPECT_DOUBLE_EQ(inflow->waterRate[0], 200.0);
  EXPECT_DOUBLE_EQ(inflow->gasRate[0], 0.5);
  EXPECT_DOUBLE_EQ(inflow->pressure[0], 2000.0);
  EXPECT_NEAR(inflow->pressure[9], 3000.0, 4.0);
  EXPECT_DOUBLE_EQ(inflow->oilGravity, kOpenGravity);
  EXPECT_DOUBLE_EQ(inflow->gasGravity, 1.0);
  EXPECT_DOUBLE_EQ(inflow->waterGravity, 65.0 / 62.43);
  EXPECT_DOUBLE_EQ(inflow->massRate[0],
                   800.0 * 5.615 * 62.43 * kOpenGravity + 0.5 * 1000000.0 * 0.0763 * 1.0)
      << "water is left out";
  EXPECT_EQ(inflow->hasStepped, 0u);
  EXPECT_EQ(inflow->size, 0x7e7e7e7eu) << "the host's own bytes stay";
  EXPECT_EQ(inflow->fluid.componentCount, 0x7e7e7e7e);
  ReadInflow(2, *inflow);
  EXPECT_DOUBLE_EQ(inflow->oilGravity, OilGravityAt(1000.0 * std::pow(0.5, 2.5)))
      << "a shut well's is that in the middle of its table";

  Operate(0, 400.0, 100.0, 0.0);
  StepBy(1.0);
  Command(EXT_SET_TIMESTEP_DATA);
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_EQ(inflow->hasStepped, 1u);
  EXPECT_EQ((Numbers{inflow->currentPressure, inflow->currentOilRate, inflow->currentWaterRate,
                     inflow->currentGasRate}),
            (Numbers{2500.0, 400.0, 100.0, 0.25}));
}

TEST_F(Inflow, GivesUsableGravitiesForAWellWithoutDensities) {
  ReadAll();
  for (const auto& [set, got] : {std::pair{"0.05", 0.8}, {"0.1", 0.1}}) {
    Set("Well[{P1}].OilGravity", set);
    ReadInflow(0, *inflow);
    EXPECT_DOUBLE_EQ(inflow->oilGravity, got);
  }
  Set("Well[{P1}].WaterGravity", "0");
  Set("Well[{P1}].GasGravity", "0");
  ReadInflow(0, *inflow);
  EXPECT_DOUBLE_EQ(inflow->waterGravity, 1.0);
  EXPECT_DOUBLE_EQ(inflow->gasGravity, 0.0);
}

TEST_F(Inflow, HandsBackAnInjectorsOwnNumbersButNotAProducers) {
  ReadAll();
  for (int32_t well : {0, 1}) {
    point->well = well;
    point->pointValue[0] = 7.0;
    point->passThrough[2] = 3.0;
    point->oilGravity = 0.5;
    Command(EXT_SET_OP_PT, point.get());
    ReadInflow(well, *inflow);
    EXPECT_EQ(inflow->pointValue[9], well == 1 ? 7.0 : 0.0);
    EXPECT_EQ(inflow->passThrough[2], well == 1 ? 3.0 : 0.0);
    EXPECT_EQ(inflow->oilGravity, well == 1 ? 0.5 : kOpenGravity);
  }
}

TEST_F(Inflow, CarriesTheFluidAndTheCompositionOfEachPoint) {
  peer.components = {"C1", "C2", "C3", "C4"};
  ReadAll();
  ASSERT_EQ(ReadInflow(0, *inflow), 0);
  EXPECT_STREQ(inflow->fluid.names[3], "C4");
  EXPECT_EQ(inflow->moleFractions[9][3], 0.25);
  EXPECT_EQ(inflow->moleFractions[9][4], 0.0);
  EXPECT_EQ(inflow->fluid.reserved0, 0x7e7e7e7eu);
}

}  // namespace
}  // namespace gantry::test
