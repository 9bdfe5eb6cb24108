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
    std::memset(record.get(), 0x7e, sizeof *record);
  }

  void ReadWells() {
    StartSimulator();
    ASSERT_EQ(StartRun({0, 1, 2}), 0) << Error();
    ASSERT_EQ(Command(EXT_SET_TIMESTEP_DATA), 0) << Error();
  }

  std::unique_ptr<_tGetSetData> record{new _tGetSetData};
};

/// That of the lowest rate of a sweep, which is nearest to a well that has not flowed yet.
const double kOpenGravity = OilGravityAt(1000.0 * std::pow(0.1, 2.5));

TEST_F(Inflow, GivesTheSweepOfAProducer) {
  ReadWells();
  ASSERT_EQ(ReadInflow(0, *record), 0);
  EXPECT_EQ(record->isShut, 0);
  ASSERT_EQ(record->pointCount, 10);
  EXPECT_DOUBLE_EQ(record->oilRate[0], 800.0);
  EXPECT_DOUBLE_EQ(record->waterRate[0], 200.0);
  EXPECT_DOUBLE_EQ(record->gasRate[0], 0.5);
  EXPECT_DOUBLE_EQ(record->pressure[0], 2000.0);
  EXPECT_NEAR(record->pressure[9], 3000.0, 4.0);
  EXPECT_DOUBLE_EQ(record->oilGravity, kOpenGravity);
  EXPECT_DOUBLE_EQ(record->gasGravity, 1.0);
  EXPECT_DOUBLE_EQ(record->massRate[0],
                   800.0 * 5.615 * 62.43 * kOpenGravity + 0.5 * 1000000.0 * 0.0763 * 1.0)
      << "water is left out";
  EXPECT_EQ(record->hasStepped, 0u);
  EXPECT_EQ(record->size, 0x7e7e7e7eu) << "the host's own bytes stay";
  EXPECT_EQ(record->fluid.componentCount, 0x7e7e7e7e);
  ReadInflow(2, *record);
  EXPECT_DOUBLE_EQ(record->oilGravity, OilGravityAt(1000.0 * std::pow(0.5, 2.5)))
      << "a shut well's is that in the middle of its table";

  Operate(0, 400.0, 100.0, 0.0);
  StepBy(1.0);
  Command(EXT_SET_TIMESTEP_DATA);
  ASSERT_EQ(ReadInflow(0, *record), 0);
  EXPECT_EQ(record->hasStepped, 1u);
  EXPECT_EQ((Numbers{record->currentPressure, record->currentOilRate, record->currentWaterRate,
                     record->currentGasRate}),
            (Numbers{2500.0, 400.0, 100.0, 0.25}));
}

TEST_F(Inflow, GivesUsableGravitiesForAWellWithoutDensities) {
  ReadWells();
  for (const auto& [set, got] : {std::pair{"0.05", 0.8}, {"0.1", 0.1}}) {
    Set("Well[{P1}].OilGravity", set);
    ReadInflow(0, *record);
    EXPECT_DOUBLE_EQ(record->oilGravity, got);
  }
  Set("Well[{P1}].WaterGravity", "0");
  Set("Well[{P1}].GasGravity", "0");
  ReadInflow(0, *record);
  EXPECT_DOUBLE_EQ(record->waterGravity, 1.0);
  EXPECT_DOUBLE_EQ(record->gasGravity, 0.0);
}

TEST_F(Inflow, HandsBackAnInjectorsOwnNumbersButNotAProducers) {
  ReadWells();
  for (int32_t well : {0, 1}) {
    auto point = std::make_unique<_tGetSetData>();
    point->well = well;
    point->pointValue[0] = 7.0;
    point->passThrough[2] = 3.0;
    point->oilGravity = 0.5;
    Command(EXT_SET_OP_PT, point.get());
    ReadInflow(well, *record);
    EXPECT_EQ(record->pointValue[9], well == 1 ? 7.0 : 0.0);
    EXPECT_EQ(record->passThrough[2], well == 1 ? 3.0 : 0.0);
    EXPECT_EQ(record->oilGravity, well == 1 ? 0.5 : kOpenGravity);
  }
}

TEST_F(Inflow, CarriesTheFluidAndTheCompositionOfEachPoint) {
  peer.components = {"C1", "C2", "C3", "C4"};
  ReadWells();
  ASSERT_EQ(ReadInflow(0, *record), 0);
  EXPECT_STREQ(record->fluid.names[3], "C4");
  EXPECT_EQ(record->moleFractions[9][3], 0.25);
  EXPECT_EQ(record->moleFractions[9][4], 0.0);
  EXPECT_EQ(record->fluid.reserved0, 0x7e7e7e7eu);
}

}  // namespace
}  // namespace gantry::test
