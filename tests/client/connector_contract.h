#pragma once

#include <cmath>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "support/row_tables.h"
#include "support/simulated_field.h"

namespace gantry::test {

/// What every connector must do, whatever stands behind it. A rig puts a connector of one kind
/// before a simulated field:
///
///   struct Rig {
///     static constexpr bool kSetsInjection = ...;          // or answers false and does nothing
///     explicit Rig(SimulatedField& field);                 // the field outlives the rig
///     std::unique_ptr<CExtConnectorBase> Connect();        // throws as the kind's factory does
///   };
///
/// The rig is destroyed after the connector.
template <class Rig>
class ConnectorContract : public testing::Test {
 protected:
  CExtConnectorBase& Connect() {
    rig_ = std::make_unique<Rig>(field);
    connector_ = rig_->Connect();
    return *connector_;
  }

  /// The connector of a run that has come to its first timestep.
  CExtConnectorBase& Advance() {
    Connect().AdvanceNewton();
    return *connector_;
  }

  UnitConverter Units() const { return UnitConverter(field.isMetric); }

  /// What a record must hold of an item, in the driver's units.
  double Expected(const std::string& well, const std::string& item, int32_t code) {
    return Units().FromSimulator(field.At(well).Value(item), code);
  }

  SimulatedField field;
  std::unique_ptr<Rig> rig_;
  std::unique_ptr<CExtConnectorBase> connector_;
};

inline std::string FailureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "";
}

TYPED_TEST_SUITE_P(ConnectorContract);

TYPED_TEST_P(ConnectorContract, KnowsTheRun) {
  CExtConnectorBase& connector = this->Connect();
  int32_t day = 0, month = 0, year = 0;
  connector.GetStartDate(day, month, year);
  EXPECT_EQ(std::vector({day, month, year}), std::vector({31, 12, 2019}));
  EXPECT_EQ(connector.GetVersion(), 2017.2);
  EXPECT_TRUE(connector.GetMetricFlag());
  EXPECT_TRUE(connector.GetCompositionalFlag());
  connector.AdvanceNewton();
  EXPECT_EQ(connector.GetTimeDays(), 0.0);
  connector.RunUntil(31.25);
  EXPECT_EQ(connector.GetTimeDays(), 31.25);
  connector.GetDate(day, month, year);
  EXPECT_EQ(std::vector({day, month, year}), std::vector({29, 2, 2020}));
  EXPECT_FALSE(connector.GetTerminationFlag());
  connector.RunUntil(100.0);
  EXPECT_TRUE(connector.GetTerminationFlag());
  connector.Shutdown();
}

TYPED_TEST_P(ConnectorContract, RefusesASimulatorThatIsTooOldOrTooNew) {
  for (const auto& [version, failure] : {std::pair{"2016.1 and older", "(2016.1) is too old"},
                                         {"10000.5", "(10000.5) is too new"},
                                         {" 1e999", "(inf) is too new"}}) {
    this->field.version = version;
    EXPECT_TRUE(
        FailureOf([this] {
          this->Connect();
        }).starts_with(std::string("The simulator version ") + failure + " for the connector"));
  }
}

TYPED_TEST_P(ConnectorContract, ListsEveryWell) {
  std::vector<ConnectorWellStatus> statuses = {{"old", "", ""}};
  this->Advance().GetWellStatus(statuses);
  ASSERT_EQ(statuses.size(), 4u);
  EXPECT_EQ(statuses[0].name, "P1");
  EXPECT_EQ(statuses[0].status, "SHUT");
  EXPECT_EQ(statuses[2].type, "WATER_INJECTOR");
}

TYPED_TEST_P(ConnectorContract, TellsTheEquationOfState) {
  EOSProperties properties;
  properties.parachor = {1.0};
  this->Connect().GetEOSProperties(properties);
  EXPECT_EQ(properties.componentCount, 2);
  EXPECT_EQ(properties.eosName, "PR");
  EXPECT_EQ(properties.componentNames, (Strings{"C1", "C2"}));
  EXPECT_EQ(properties.molecularWeight, (Doubles{16.0, 30.0}));
  EXPECT_EQ(properties.criticalTemperature[1], this->Units().FromSimulator(32.0, kTemperature));
  EXPECT_EQ(properties.criticalPressure[0], this->Units().FromSimulator(46.0, kPressure));
  EXPECT_EQ(properties.binaryInteraction, Doubles{0.5});
  EXPECT_TRUE(properties.parachor.empty());
  EXPECT_EQ(properties.presentProperties & ~uint32_t{EOSProperties::kBinaryInteraction}, 19u);
}

TYPED_TEST_P(ConnectorContract, ReadsWellsInTheDriversUnits) {
  for (const bool isMetric : {true, false}) {
    this->field.isMetric = isMetric;
    std::vector<ConnectorWellRecord> records;
    this->Advance().GetWellData({"P2", "G1"}, records);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].name, "P2");
    EXPECT_EQ(records[0].status, "OPEN");
    EXPECT_EQ(records[0].oilRate, this->Expected("P2", "OIL_PRODUCTION_RATE", kLiquidRate));
    EXPECT_EQ(records[0].waterRate, this->Expected("P2", "WATER_PRODUCTION_RATE", kLiquidRate));
    EXPECT_EQ(records[0].gasRate, this->Expected("P2", "GAS_PRODUCTION_RATE", kGasRate));
    EXPECT_EQ(records[0].bottomHolePressure,
              this->Expected("P2", "BOTTOM_HOLE_PRESSURE", kPressure));
    EXPECT_EQ(records[0].tubingHeadPressure,
              this->Expected("P2", "TUBING_HEAD_PRESSURE", kPressure));
    EXPECT_EQ(records[1].gasInjectionRate, this->Expected("G1", "GAS_INJECTION_RATE", kGasRate));
    EXPECT_EQ(records[1].waterInjectionRate, 0.0);
    EXPECT_EQ(records[1].uptimeFraction, 1.0);
    this->connector_.reset();
  }
}

TYPED_TEST_P(ConnectorContract, MeasuresTheInflowOfEveryKindOfWell) {
  const Strings wells = {"P1", "W1", "G1"};
  std::vector<ConnectorWellRecord> records;
  this->Advance().GetWellDataAndIPR(2, wells, records, true, 1.0);
  ASSERT_EQ(records.size(), 3u);
  const UnitConverter units = this->Units();
  const Doubles potentials = {750.0, 800.0, 50000.0};
  for (size_t point = 0; point < 10; ++point) {
    const double share = static_cast<double>(10 - point) / 10.0;
    const auto near = [](double value, double expected) {
      EXPECT_NEAR(value, expected, 1e-9 * std::abs(expected));
    };
    near(records[0].iprOilRate[point], units.FromSimulator(750.0 * share, kLiquidRate));
    near(records[0].iprWaterRate[point], units.FromSimulator(250.0 * share, kLiquidRate));
    near(records[0].iprGasRate[point], units.FromSimulator(100000.0 * share, kGasRate));
    near(records[0].iprPressure[point], units.FromSimulator(250.0 - 100.0 * share, kPressure));
    near(records[1].iprWaterRate[point], units.FromSimulator(800.0 * share, kLiquidRate));
    near(records[2].iprGasRate[point], units.FromSimulator(50000.0 * share, kGasRate));
  }
  EXPECT_EQ(RowsOf(records[2].iprComposition), std::vector(10, Doubles{0.75, 0.25}));
  EXPECT_EQ(records[0].iprTemperature, Doubles(10, units.FromSimulator(80.0, kTemperature)));
  EXPECT_EQ(records[0].iprOilDensity, Doubles(10, units.FromSimulator(800.0, kDensity)));
  EXPECT_EQ(records[0].iprWaterDensity, Doubles(10, units.FromSimulator(1000.0, kDensity)));
  EXPECT_EQ(records[0].iprGasDensity, Doubles(10, units.FromSimulator(1.0, kDensity)));
  EXPECT_EQ(this->field.At("P1").status, "OPEN") << "a well must be open to flow";
}

TYPED_TEST_P(ConnectorContract, FindsARecordByItsNameInWhateverOrder) {
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "G1";
  records[1].name = "P2";
  this->Advance().GetWellIPRData(0, {"P2", "G1"}, records, true, 1.0);
  const UnitConverter units = this->Units();
  EXPECT_NEAR(records[0].iprGasRate[9], units.FromSimulator(5000.0, kGasRate), 1e-9);
  EXPECT_NEAR(records[1].iprOilRate[9], units.FromSimulator(37.5, kLiquidRate), 1e-9);
}

TYPED_TEST_P(ConnectorContract, PacksThePointsBySkewnessAndTakesEitherPressure) {
  std::vector<ConnectorWellRecord> records;
  this->Advance().GetWellDataAndIPR(0, {"P2"}, records, false, 2.0);
  const UnitConverter units = this->Units();
  EXPECT_NEAR(records[0].iprOilRate[5], units.FromSimulator(375.0 * 0.25, kLiquidRate), 1e-9);
  EXPECT_NEAR(records[0].iprPressure[0], units.FromSimulator(100.0, kPressure), 1e-9);
  EXPECT_EQ(records[0].iprComposition.RowCount(), 0u);
}

TYPED_TEST_P(ConnectorContract, SendsWhatTheHostDecidedInTheSimulatorsUnits) {
  CExtConnectorBase& connector = this->Advance();
  connector.SetWellStatus({"P1", "W1"}, {"OPEN", "SURFACE_SHUTIN"});
  connector.SetWellUptime({"P1"}, {0.5});
  const std::vector<Doubles> values = {{100.0, 7.0}, {}};
  connector.SetWellConstraints({"P1", "P2"}, {{"LIQUID_PRODUCTION_RATE", "RAW"}, {}}, values,
                               {{kLiquidRate, kNoUnit}, {}});
  EXPECT_EQ(values[0], (Doubles{100.0, 7.0}));
  SimulatedWell& well = this->field.At("P1");
  EXPECT_EQ(well.status, "OPEN");
  EXPECT_EQ(well.uptime, 0.5);
  EXPECT_EQ(well.constraints["LIQUID_PRODUCTION_RATE"], 100.0 * 0.158987);
  EXPECT_EQ(well.constraints["RAW"], 7.0);
  EXPECT_EQ(this->field.At("W1").status, "SURFACE_SHUTIN");
}

TYPED_TEST_P(ConnectorContract, AttachesInjectionSourcesWhereItsVersionCan) {
  CExtConnectorBase& connector = this->Advance();
  EXPECT_EQ(connector.SetInjectionSource("G1", "S1"), TypeParam::kSetsInjection);
  EXPECT_FALSE(connector.SetInjectionSource("P1", "S2")) << "the simulator answers zero";
  connector.SetWellInjectionComposition({"S1"}, {{0.75, 0.25}});
  if (TypeParam::kSetsInjection) {
    EXPECT_EQ(this->field.sources["G1"], "S1");
    EXPECT_EQ(this->field.compositions["S1"], (Numbers{0.75, 0.25}));
  } else {
    EXPECT_TRUE(this->field.compositions.empty());
  }
}

TYPED_TEST_P(ConnectorContract, AsksNothingForNoWells) {
  CExtConnectorBase& connector = this->Advance();
  const int before = this->field.requests;
  std::vector<ConnectorWellRecord> records;
  connector.GetWellDataAndIPR(2, {}, records, true, 2.5);
  EXPECT_TRUE(records.empty());
  EXPECT_EQ(this->field.requests, before);
}

REGISTER_TYPED_TEST_SUITE_P(ConnectorContract, KnowsTheRun, RefusesASimulatorThatIsTooOldOrTooNew,
                            ListsEveryWell, TellsTheEquationOfState, ReadsWellsInTheDriversUnits,
                            MeasuresTheInflowOfEveryKindOfWell,
                            FindsARecordByItsNameInWhateverOrder,
                            PacksThePointsBySkewnessAndTakesEitherPressure,
                            SendsWhatTheHostDecidedInTheSimulatorsUnits,
                            AttachesInjectionSourcesWhereItsVersionCan, AsksNothingForNoWells);

}  // namespace gantry::test
