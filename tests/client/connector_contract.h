#pragma once

#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "client/connector_base.h"
#include "support/raised.h"
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

  /// A number of the simulator in the driver's units.
  double Converted(double value, int32_t code) const {
    return UnitConverter(field.isMetric).FromSimulator(value, code);
  }
  double Liquid(double rate) const { return Converted(rate, kLiquidRate); }
  double Gas(double rate) const { return Converted(rate, kGasRate); }
  double Pressure(double pressure) const { return Converted(pressure, kPressure); }

  SimulatedField field;
  std::unique_ptr<Rig> rig_;
  std::unique_ptr<CExtConnectorBase> connector_;
};

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
    EXPECT_TRUE(Raised([this] { this->Connect(); })
                    .starts_with(std::string("exception: The simulator version ") + failure +
                                 " for the connector"));
  }
}

TYPED_TEST_P(ConnectorContract, ListsEveryWellAndReadsSomeInTheDriversUnits) {
  for (const bool isMetric : {true, false}) {
    this->field.isMetric = isMetric;
    CExtConnectorBase& connector = this->Advance();
    std::vector<ConnectorWellStatus> statuses = {{"old", "", ""}};
    connector.GetWellStatus(statuses);
    ASSERT_EQ(statuses.size(), 4u);
    EXPECT_EQ(statuses[0].name + statuses[0].status + statuses[2].type, "P1SHUTWATER_INJECTOR");
    std::vector<ConnectorWellRecord> records;
    connector.GetWellData({"P2", "G1"}, records);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[0].name + records[0].status, "P2OPEN");
    EXPECT_EQ(records[0].oilRate, this->Liquid(375.0));
    EXPECT_EQ(records[0].waterRate, this->Liquid(125.0));
    EXPECT_EQ(records[0].gasRate, this->Gas(50000.0));
    EXPECT_EQ(records[0].bottomHolePressure, this->Pressure(200.0));
    EXPECT_EQ(records[0].tubingHeadPressure, this->Pressure(100.0));
    EXPECT_EQ(records[1].gasInjectionRate, this->Gas(50000.0));
    EXPECT_EQ(records[1].waterInjectionRate, 0.0);
    EXPECT_EQ(records[1].uptimeFraction, 1.0);
    this->connector_.reset();
  }
}

TYPED_TEST_P(ConnectorContract, TellsTheEquationOfState) {
  double value = 0.0;
  for (const char* name : {"Molecular weight", "TCrit", "PCrit", "VCRIT", "Acentric factor", "BP",
                           "VSHIFT", "OMEGAA", "OMEGAB", "unheard of"}) {
    this->field.eosProperties[name] = {++value, 2.0};
  }
  EOSProperties eos;
  eos.parachor = {1.0};
  this->Connect().GetEOSProperties(eos);
  EXPECT_EQ(eos.componentCount, 2);
  EXPECT_EQ(eos.eosName, "PR");
  EXPECT_EQ(eos.componentNames, (Strings{"C1", "C2"}));
  EXPECT_EQ(eos.binaryInteraction, Doubles{0.5});
  EXPECT_EQ(eos.molecularWeight, (Doubles{1.0, 2.0}));
  EXPECT_EQ(eos.criticalPressure[0], this->Pressure(3.0));
  const auto degrees = [this](double metric) { return this->Converted(metric, kTemperature); };
  EXPECT_EQ((Doubles{eos.criticalTemperature[0], eos.boilingPoint[0]}),
            (Doubles{degrees(2.0), degrees(6.0)}));
  EXPECT_EQ(eos.criticalVolume[0], this->Converted(4.0, kCriticalVolume));
  EXPECT_EQ((Doubles{eos.acentricFactor[0], eos.volumeShift[0], eos.omegaA[0], eos.omegaB[0]}),
            (Doubles{5.0, 7.0, 8.0, 9.0}));
  EXPECT_TRUE(eos.parachor.empty());
  EXPECT_EQ(eos.presentProperties | EOSProperties::kBinaryInteraction,
            4095u - EOSProperties::kExtraProperty - EOSProperties::kParachor);
}

TYPED_TEST_P(ConnectorContract, MeasuresTheInflowOfEveryKindOfWell) {
  const Strings wells = {"P1", "W1", "G1"};
  std::vector<ConnectorWellRecord> records;
  this->Advance().GetWellDataAndIPR(2, wells, records, true, 1.0);
  ASSERT_EQ(records.size(), 3u);
  const auto near = [](double value, double expected) {
    EXPECT_NEAR(value, expected, 1e-9 * std::abs(expected));
  };
  for (size_t point = 0; point < 10; ++point) {
    const double share = static_cast<double>(10 - point) / 10.0;
    near(records[0].iprOilRate[point], this->Liquid(750.0 * share));
    near(records[0].iprWaterRate[point], this->Liquid(250.0 * share));
    near(records[0].iprGasRate[point], this->Gas(100000.0 * share));
    near(records[0].iprPressure[point], this->Pressure(250.0 - 100.0 * share));
    near(records[1].iprWaterRate[point], this->Liquid(800.0 * share));
    near(records[2].iprGasRate[point], this->Gas(50000.0 * share));
  }
  EXPECT_EQ(RowsOf(records[2].iprComposition), std::vector(10, Doubles{0.75, 0.25}));
  EXPECT_EQ(records[0].iprTemperature, Doubles(10, this->Converted(80.0, kTemperature)));
  EXPECT_EQ(records[0].iprOilDensity, Doubles(10, this->Converted(800.0, kDensity)));
  EXPECT_EQ(records[0].iprWaterDensity, Doubles(10, this->Converted(1000.0, kDensity)));
  EXPECT_EQ(records[0].iprGasDensity, Doubles(10, this->Converted(1.0, kDensity)));
  EXPECT_EQ(this->field.At("P1").status, "OPEN") << "a well must be open to flow";
}

TYPED_TEST_P(ConnectorContract, AddsPointsPackedBySkewnessAtEitherPressureToTheRecordOfAName) {
  std::vector<ConnectorWellRecord> records(2);
  records[0].name = "G1";
  records[1].name = "P2";
  records[1].iprOilRate = {-1.0};
  CExtConnectorBase& connector = this->Advance();
  connector.GetWellIPRData(0, {"P2", "G1"}, records, false, 2.0);
  EXPECT_NEAR(records[0].iprGasRate.at(9), this->Gas(500.0), 1e-9);
  EXPECT_NEAR(records[1].iprPressure.at(0), this->Pressure(100.0), 1e-9);
  EXPECT_NEAR(records[1].iprOilRate.at(6), this->Liquid(375.0 * 0.25), 1e-9);
  EXPECT_EQ(records[1].iprOilRate[0], -1.0);
  EXPECT_EQ(records[0].iprComposition.RowCount(), 0u);
  const int before = this->field.requests;
  connector.GetWellDataAndIPR(2, {}, records, true, 2.5);
  EXPECT_EQ(this->field.requests, before) << "nothing is asked for no wells";
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

REGISTER_TYPED_TEST_SUITE_P(ConnectorContract, KnowsTheRun, RefusesASimulatorThatIsTooOldOrTooNew,
                            ListsEveryWellAndReadsSomeInTheDriversUnits, TellsTheEquationOfState,
                            MeasuresTheInflowOfEveryKindOfWell,
                            AddsPointsPackedBySkewnessAtEitherPressureToTheRecordOfAName,
                            SendsWhatTheHostDecidedInTheSimulatorsUnits,
                            AttachesInjectionSourcesWhereItsVersionCan);

}  // namespace gantry::test
