#pragma once

#include <array>

#include "described_toml/described_key.h"
#include "tanksim/deck.h"

// The numbers of a deck, table by table: what is read, checked and shown in the reference.

namespace gantry::simulator {

using toml_reader::Key;
using toml_reader::KeyRow;
using toml_reader::Range;
using enum toml_reader::Quantity;

inline constexpr double kNoLimit = 1e30;
inline constexpr double kHighestDeckPressure = 25000.0;  // psia
inline constexpr Range kWellPressure{14.69, kHighestDeckPressure};
inline constexpr Range kAnyRate{0, kNoLimit};
inline constexpr Range kAnyIndex{1e-9, kNoLimit};
inline constexpr Range kShare{0, 1};

inline constexpr std::array kInitialKeys = std::to_array<KeyRow<InitialState>>({
    {Key("pressure", "at the start", kPressure).In({14.7, kHighestDeckPressure}).Needed(),
     &InitialState::pressure},
    {Key("temperature", "of the reservoir", kSimulatorTemperature).In({32, 700}).Else(200.0),
     &InitialState::temperature},
    {Key("pore_volume", "at the initial pressure", kReservoirVolume).In({1, kNoLimit}).Needed(),
     &InitialState::poreVolume},
    {Key("water_saturation", "at the start").In({0, 0.99}).Needed(),
     &InitialState::waterSaturation},
    {Key("gas_saturation", "at the start, free gas; black oil only").In(kShare).Else(0.0),
     &InitialState::gasSaturation},
});

inline constexpr std::array kTankKeys = std::to_array<KeyRow<TankData>>({
    {Key("rock_compressibility", "of the pore volume", kInversePressure).In({0, 1e-3}).Else(3e-6),
     &TankData::rockCompressibility},
    {Key("gas_sweep", "share of the volume that gas has swept when its front breaks through")
         .In({0.01, 1})
         .Else(1.0),
     &TankData::gasSweep},
    {Key("water_sweep", "the same for water").In({0.01, 1}).Else(1.0), &TankData::waterSweep},
});

inline constexpr std::array kContentKeys = std::to_array<KeyRow<InitialState>>({
    {Key("dissolved_gas", "of the oil at the start; saturated when absent; black oil only",
         kGasPerLiquid)
         .In({0, 100}),
     &InitialState::dissolvedGas},
});

inline constexpr std::array kAquiferKeys = std::to_array<KeyRow<AquiferData>>({
    {Key("volume", "of its water", kReservoirVolume).In({1, kNoLimit}).Needed(),
     &AquiferData::volume},
    {Key("compressibility", "of water and rock", kInversePressure).In({1e-9, 1e-3}).Else(6e-6),
     &AquiferData::compressibility},
    {Key("productivity_index", "towards the tank", kLiquidPerPressure).In(kAnyRate).Needed(),
     &AquiferData::productivityIndex},
});

inline constexpr std::array kWaterKeys = std::to_array<KeyRow<WaterData>>({
    {Key("reference_pressure", "", kPressure).In({0, kHighestDeckPressure}).Else(14.7),
     &WaterData::referencePressure},
    {Key("formation_factor", "at the reference pressure").In({0.5, 2}).Else(1.0),
     &WaterData::formationFactor},
    {Key("compressibility", "", kInversePressure).In({0, 1e-3}).Else(3e-6),
     &WaterData::compressibility},
    {Key("viscosity", "cp").In({0.01, 10}).Else(0.5), &WaterData::viscosity},
    {Key("density", "at the surface", kDensity).In({50, 90}).Else(62.43), &WaterData::density},
});

inline constexpr std::array kBlackOilKeys = std::to_array<KeyRow<BlackOilData>>({
    {Key("oil_density", "at the surface", kDensity).In({20, 70}).Needed(),
     &BlackOilData::oilDensity},
    {Key("gas_density", "at the surface", kDensity).In({0.01, 0.5}).Needed(),
     &BlackOilData::gasDensity},
    {Key("oil_compressibility", "above the bubble point", kInversePressure)
         .In({1e-7, 1e-3})
         .Else(1e-5),
     &BlackOilData::oilCompressibility},
    {Key("oil_viscosity_gradient", "relative growth of the oil's viscosity above the bubble point",
         kInversePressure)
         .In({0, 1e-2})
         .Else(0.0),
     &BlackOilData::oilViscosityGradient},
});

inline constexpr std::array kComponentKeys = std::to_array<KeyRow<ComponentData>>({
    {Key("molecular_weight", "").In({1, 2000}).Needed(), &ComponentData::molecularWeight},
    {Key("critical_temperature", "", kSimulatorTemperature).In({-450, 2500}).Needed(),
     &ComponentData::criticalTemperature},
    {Key("critical_pressure", "", kPressure).In({10, 5000}).Needed(),
     &ComponentData::criticalPressure},
    {Key("critical_volume", "", kCriticalVolume).In({0.1, 200}).Needed(),
     &ComponentData::criticalVolume},
    {Key("acentric_factor", "").In({-0.5, 3}).Needed(), &ComponentData::acentricFactor},
    {Key("boiling_point", "", kSimulatorTemperature).In({-459, 2000}).Needed(),
     &ComponentData::boilingPoint},
    {Key("volume_shift", "as a share of b").In({-1, 1}).Else(0.0), &ComponentData::volumeShift},
    {Key("parachor", "").In({0, 10000}).Else(0.0), &ComponentData::parachor},
});

inline constexpr Key kBinaryInteraction =
    Key("binary_interaction", "the lower triangle, row by row").In({-1, 1}).Needed();
inline constexpr Key kComposition =
    Key("composition", "mole fractions; compositional only").In(kShare).Needed();

inline constexpr std::array kTopKeys = std::to_array<KeyRow<Deck>>({
    {Key("end_time", "days; without it the run has no end").In({1e-6, 1e7}), &Deck::endTime},
});

inline constexpr Key kOilIndex =
    Key("productivity_index", "of oil at connate water, at the initial pressure",
        kLiquidPerPressure)
        .In(kAnyIndex)
        .Needed();
inline constexpr Key kGasIndex =
    Key("gas_productivity_index", "of gas at the initial pressure, for a well in a gas reservoir",
        kGasPerPressure)
        .In(kAnyIndex)
        .Needed();
inline constexpr Key kWaterInjectivity =
    Key("injectivity_index", "of a water injector", kLiquidPerPressure).In(kAnyIndex).Needed();
inline constexpr Key kGasInjectivity =
    Key("injectivity_index", "of a gas injector", kGasPerPressure).In(kAnyIndex).Needed();

inline constexpr std::array kWellKeys = std::to_array<KeyRow<WellData>>({
    {Key("skin", "changes the index").In({-6.4, 1000}).Else(0.0), &WellData::skin},
    {Key("uptime", "fraction of the time").In(kShare).Else(1.0), &WellData::uptime},
    {Key("depth", "of the tubing; 0 for none", kLength).In({0, 40000}).Else(0.0), &WellData::depth},
    {Key("tubing_diameter", "0 for no friction", kLength).In({0, 5}).Else(0.0),
     &WellData::tubingDiameter},
    {Key("injection_temperature", "", kSimulatorTemperature).In({32, 400}).Else(60.0),
     &WellData::injectionTemperature},
});

/// A well's own limit, and the kind of well that may have it.
struct LimitKey {
  Key about;
  LimitItem item;
  bool ofProducers;
};

inline constexpr std::array kLimitKeys = std::to_array<LimitKey>({
    {Key("minimum_bottom_hole_pressure", "", kPressure).In(kWellPressure).Else(14.7),
     LimitItem::kBottomHolePressure, true},
    {Key("maximum_bottom_hole_pressure", "", kPressure).In(kWellPressure).Needed(),
     LimitItem::kBottomHolePressure, false},
    {Key("minimum_tubing_head_pressure", "", kPressure).In(kWellPressure),
     LimitItem::kTubingHeadPressure, true},
    {Key("maximum_oil_rate", "", kLiquid).In(kAnyRate), LimitItem::kOilProduction, true},
    {Key("maximum_gas_rate", "", kGas).In(kAnyRate), LimitItem::kGasProduction, true},
    {Key("maximum_water_rate", "", kLiquid).In(kAnyRate), LimitItem::kWaterProduction, true},
    {Key("maximum_liquid_rate", "", kLiquid).In(kAnyRate), LimitItem::kLiquidProduction, true},
    {Key("maximum_reservoir_rate", "", kReservoirVolume).In(kAnyRate),
     LimitItem::kReservoirProduction, true},
    {Key("maximum_drawdown", "", kPressure).In({0, kHighestDeckPressure}),
     LimitItem::kDrawdownRegion, true},
    {Key("maximum_gas_injection_rate", "", kGas).In(kAnyRate), LimitItem::kGasInjection, false},
    {Key("maximum_water_injection_rate", "", kLiquid).In(kAnyRate), LimitItem::kWaterInjection,
     false},
});

}  // namespace gantry::simulator
