#pragma once

#include <array>

#include "tanksim/deck.h"
#include "tanksim/deck_table.h"

// The numbers of a deck, table by table: what is read, checked and shown in the reference.

namespace gantry::simulator {

/// A number and the field that it fills.
template <class Data>
struct FieldKey {
  NumberKey key;
  double Data::*field;
};

inline constexpr double kNoLimit = 1e30;
inline constexpr double kHighestDeckPressure = 25000.0;  // psia

inline constexpr std::array kInitialKeys = std::to_array<FieldKey<InitialState>>({
    {{"pressure", Quantity::kPressure, 14.7, kHighestDeckPressure, {}, "at the start"},
     &InitialState::pressure},
    {{"temperature", Quantity::kTemperature, 32, 700, 200.0, "of the reservoir"},
     &InitialState::temperature},
    {{"pore_volume", Quantity::kReservoirVolume, 1, kNoLimit, {}, "at the initial pressure"},
     &InitialState::poreVolume},
    {{"water_saturation", Quantity::kNumber, 0, 0.99, {}, "at the start"},
     &InitialState::waterSaturation},
    {{"gas_saturation", Quantity::kNumber, 0, 1, 0.0, "at the start, free gas; black oil only"},
     &InitialState::gasSaturation},
});

inline constexpr std::array kTankKeys = std::to_array<FieldKey<TankData>>({
    {{"rock_compressibility", Quantity::kInversePressure, 0, 1e-3, 3e-6, "of the pore volume"},
     &TankData::rockCompressibility},
    {{"gas_sweep", Quantity::kNumber, 0.01, 1, 1.0,
      "share of the volume that gas has swept when its front breaks through"},
     &TankData::gasSweep},
    {{"water_sweep", Quantity::kNumber, 0.01, 1, 1.0, "the same for water"}, &TankData::waterSweep},
});

inline constexpr NumberKey kDissolvedGas = {
    "dissolved_gas",
    Quantity::kGasPerLiquid,
    0,
    100,
    {},
    "of the oil at the start; saturated when absent; black oil only"};

inline constexpr std::array kAquiferKeys = std::to_array<FieldKey<AquiferData>>({
    {{"volume", Quantity::kReservoirVolume, 1, kNoLimit, {}, "of its water"}, &AquiferData::volume},
    {{"compressibility", Quantity::kInversePressure, 1e-9, 1e-3, 6e-6, "of water and rock"},
     &AquiferData::compressibility},
    {{"productivity_index", Quantity::kLiquidPerPressure, 0, kNoLimit, {}, "towards the tank"},
     &AquiferData::productivityIndex},
});

inline constexpr std::array kWaterKeys = std::to_array<FieldKey<WaterData>>({
    {{"reference_pressure", Quantity::kPressure, 0, kHighestDeckPressure, 14.7, ""},
     &WaterData::referencePressure},
    {{"formation_factor", Quantity::kNumber, 0.5, 2, 1.0, "at the reference pressure"},
     &WaterData::formationFactor},
    {{"compressibility", Quantity::kInversePressure, 0, 1e-3, 3e-6, ""},
     &WaterData::compressibility},
    {{"viscosity", Quantity::kNumber, 0.01, 10, 0.5, "cp"}, &WaterData::viscosity},
    {{"density", Quantity::kDensity, 50, 90, 62.43, "at the surface"}, &WaterData::density},
});

inline constexpr std::array kBlackOilKeys = std::to_array<FieldKey<BlackOilData>>({
    {{"oil_density", Quantity::kDensity, 20, 70, {}, "at the surface"}, &BlackOilData::oilDensity},
    {{"gas_density", Quantity::kDensity, 0.01, 0.5, {}, "at the surface"},
     &BlackOilData::gasDensity},
    {{"oil_compressibility", Quantity::kInversePressure, 1e-7, 1e-3, 1e-5,
      "above the bubble point"},
     &BlackOilData::oilCompressibility},
    {{"oil_viscosity_gradient", Quantity::kInversePressure, 0, 1e-2, 0.0,
      "relative growth of the oil's viscosity above the bubble point"},
     &BlackOilData::oilViscosityGradient},
});

inline constexpr std::array kComponentKeys = std::to_array<FieldKey<ComponentData>>({
    {{"molecular_weight", Quantity::kNumber, 1, 2000, {}, ""}, &ComponentData::molecularWeight},
    {{"critical_temperature", Quantity::kTemperature, -450, 2500, {}, ""},
     &ComponentData::criticalTemperature},
    {{"critical_pressure", Quantity::kPressure, 10, 5000, {}, ""},
     &ComponentData::criticalPressure},
    {{"critical_volume", Quantity::kCriticalVolume, 0.1, 200, {}, ""},
     &ComponentData::criticalVolume},
    {{"acentric_factor", Quantity::kNumber, -0.5, 3, {}, ""}, &ComponentData::acentricFactor},
    {{"boiling_point", Quantity::kTemperature, -459, 2000, {}, ""}, &ComponentData::boilingPoint},
    {{"volume_shift", Quantity::kNumber, -1, 1, 0.0, "as a share of b"},
     &ComponentData::volumeShift},
    {{"parachor", Quantity::kNumber, 0, 10000, 0.0, ""}, &ComponentData::parachor},
});

inline constexpr NumberKey kBinaryInteraction = {
    "binary_interaction", Quantity::kNumber, -1, 1, {}, "the lower triangle, row by row"};
inline constexpr NumberKey kComposition = {
    "composition", Quantity::kNumber, 0, 1, {}, "mole fractions; compositional only"};

inline constexpr NumberKey kEndTime = {
    "end_time", Quantity::kNumber, 1e-6, 1e7, {}, "days; without it the run has no end"};

inline constexpr NumberKey kOilIndex = {"productivity_index",
                                        Quantity::kLiquidPerPressure,
                                        1e-9,
                                        kNoLimit,
                                        {},
                                        "of oil at connate water, at the initial pressure"};
inline constexpr NumberKey kGasIndex = {
    "gas_productivity_index",
    Quantity::kGasPerPressure,
    1e-9,
    kNoLimit,
    {},
    "of gas at the initial pressure, for a well in a gas reservoir"};
inline constexpr NumberKey kWaterInjectivity = {
    "injectivity_index", Quantity::kLiquidPerPressure, 1e-9, kNoLimit, {}, "of a water injector"};
inline constexpr NumberKey kGasInjectivity = {
    "injectivity_index", Quantity::kGasPerPressure, 1e-9, kNoLimit, {}, "of a gas injector"};

inline constexpr std::array kWellKeys = std::to_array<FieldKey<WellData>>({
    {{"skin", Quantity::kNumber, -6.4, 1000, 0.0, "changes the index"}, &WellData::skin},
    {{"uptime", Quantity::kNumber, 0, 1, 1.0, "fraction of the time"}, &WellData::uptime},
    {{"depth", Quantity::kLength, 0, 40000, 0.0, "of the tubing; 0 for none"}, &WellData::depth},
    {{"tubing_diameter", Quantity::kLength, 0, 5, 0.0, "0 for no friction"},
     &WellData::tubingDiameter},
    {{"injection_temperature", Quantity::kTemperature, 32, 400, 60.0, ""},
     &WellData::injectionTemperature},
});

/// A well's own limit, and the kind of well that may have it.
struct LimitKey {
  NumberKey key;
  LimitItem item;
  bool ofProducers;
};

inline constexpr std::array kLimitKeys = std::to_array<LimitKey>({
    {{"minimum_bottom_hole_pressure", Quantity::kPressure, 14.69, kHighestDeckPressure, 14.7, ""},
     LimitItem::kBottomHolePressure,
     true},
    {{"maximum_bottom_hole_pressure", Quantity::kPressure, 14.69, kHighestDeckPressure, {}, ""},
     LimitItem::kBottomHolePressure,
     false},
    {{"minimum_tubing_head_pressure", Quantity::kPressure, 14.69, kHighestDeckPressure, {}, ""},
     LimitItem::kTubingHeadPressure,
     true},
    {{"maximum_oil_rate", Quantity::kLiquid, 0, kNoLimit, {}, ""}, LimitItem::kOilProduction, true},
    {{"maximum_gas_rate", Quantity::kGas, 0, kNoLimit, {}, ""}, LimitItem::kGasProduction, true},
    {{"maximum_water_rate", Quantity::kLiquid, 0, kNoLimit, {}, ""},
     LimitItem::kWaterProduction,
     true},
    {{"maximum_liquid_rate", Quantity::kLiquid, 0, kNoLimit, {}, ""},
     LimitItem::kLiquidProduction,
     true},
    {{"maximum_reservoir_rate", Quantity::kReservoirVolume, 0, kNoLimit, {}, ""},
     LimitItem::kReservoirProduction,
     true},
    {{"maximum_drawdown", Quantity::kPressure, 0, kHighestDeckPressure, {}, ""},
     LimitItem::kDrawdownRegion,
     true},
    {{"maximum_gas_injection_rate", Quantity::kGas, 0, kNoLimit, {}, ""},
     LimitItem::kGasInjection,
     false},
    {{"maximum_water_injection_rate", Quantity::kLiquid, 0, kNoLimit, {}, ""},
     LimitItem::kWaterInjection,
     false},
});

}  // namespace gantry::simulator
