#pragma once

// The words of the simulator's protocol that both ends use: items of wells, their states, types.
// Frozen: docs/wire-protocol.md.

namespace gantry::words {

inline constexpr char kOilProductionRate[] = "OIL_PRODUCTION_RATE";
inline constexpr char kGasProductionRate[] = "GAS_PRODUCTION_RATE";
inline constexpr char kWaterProductionRate[] = "WATER_PRODUCTION_RATE";
inline constexpr char kLiquidProductionRate[] = "LIQUID_PRODUCTION_RATE";
inline constexpr char kOilInjectionRate[] = "OIL_INJECTION_RATE";
inline constexpr char kGasInjectionRate[] = "GAS_INJECTION_RATE";
inline constexpr char kWaterInjectionRate[] = "WATER_INJECTION_RATE";
inline constexpr char kReservoirProductionRate[] = "RES_VOLUME_PRODUCTION_RATE";
inline constexpr char kReservoirInjectionRate[] = "RES_VOLUME_INJECTION_RATE";
inline constexpr char kBottomHolePressure[] = "BOTTOM_HOLE_PRESSURE";
inline constexpr char kTubingHeadPressure[] = "TUBING_HEAD_PRESSURE";
inline constexpr char kUptimeFraction[] = "UPTIME_FRACTION";
inline constexpr char kTemperature[] = "TEMPERATURE";
inline constexpr char kGasDensity[] = "GAS_DENSITY";
inline constexpr char kWaterDensity[] = "WATER_DENSITY";
inline constexpr char kOilDensity[] = "OIL_DENSITY";
inline constexpr char kType[] = "TYPE";
inline constexpr char kStatus[] = "STATUS";

inline constexpr char kProducer[] = "PRODUCER";
inline constexpr char kWaterInjector[] = "WATER_INJECTOR";
inline constexpr char kGasInjector[] = "GAS_INJECTOR";
inline constexpr char kInjector[] = "INJECTOR";

inline constexpr char kOpen[] = "OPEN";
inline constexpr char kSurfaceShut[] = "SURFACE_SHUTIN";
inline constexpr char kCompletionsShut[] = "ALL_COMPLETIONS_SHUTIN";

/// Who closes a well or sets a constraint: the host.
inline constexpr char kUser[] = "USER";

}  // namespace gantry::words
