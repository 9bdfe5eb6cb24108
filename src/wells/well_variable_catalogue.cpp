#include "wells/well_variable_catalogue.h"

#include "client/unit_converter.h"
#include "client/words.h"

namespace gantry {

namespace {

constexpr WellVariable Settable(const char* item, const char* label, uint32_t code,
                                int32_t family) {
  return {item, item, label, code, family, kOneValue};
}
constexpr WellVariable Shown(const char* item, const char* label, uint32_t code, int32_t family) {
  return {item, "", label, code, family, kOneValue};
}
constexpr WellVariable PerComponent(const char* item, const char* label, uint32_t code,
                                    int32_t family) {
  return {item, "", label, code, family, kOnePerComponent};
}

}  // namespace

const std::array<WellVariable, 29> WellVariableCatalogue = {{
    Settable(words::kOilProductionRate, "Oil production rate", 30801, kLiquidRate),
    Shown("OIL_PRODUCTION_CUML", "Oil production cuml", 30816, kLiquidVolume),
    Settable(words::kWaterProductionRate, "Water production rate", 30803, kLiquidRate),
    Shown("WATER_PRODUCTION_CUML", "Water production cuml", 30818, kLiquidVolume),
    Settable(words::kGasProductionRate, "Gas production rate", 30805, kGasRate),
    Shown("GAS_PRODUCTION_CUML", "Gas production cuml", 30811, kGasVolume),
    Settable(words::kOilInjectionRate, "Oil injection rate", 30802, kLiquidRate),
    Shown("OIL_INJECTION_CUML", "Oil injection cuml", 30817, kLiquidVolume),
    Settable(words::kWaterInjectionRate, "Water injection rate", 30804, kLiquidRate),
    Shown("WATER_INJECTION_CUML", "Water injection cuml", 30819, kLiquidVolume),
    Settable(words::kGasInjectionRate, "Gas injection rate", 30806, kGasRate),
    Shown("GAS_INJECTION_CUML", "Gas injection cuml", 30812, kGasVolume),
    Settable(words::kLiquidProductionRate, "Liquid production rate", 30814, kLiquidRate),
    Shown("LIQUID_PRODUCTION_CUML", "Liquid production cuml", 30815, kLiquidVolume),
    Settable(words::kReservoirProductionRate, "Reservoir production rate", 30821, kLiquidRate),
    Shown("RES_VOLUME_PRODUCTION_CUML", "Reservoir production cuml", 30823, kLiquidVolume),
    Settable(words::kReservoirInjectionRate, "Reservoir injection rate", 30822, kLiquidRate),
    Shown("RES_VOLUME_INJECTION_CUML", "Reservoir injection cuml", 30824, kLiquidVolume),
    Settable(words::kBottomHolePressure, "Bottom hole pressure", 30807, kPressure),
    Settable(words::kTubingHeadPressure, "Tubing head pressure", 30808, kPressure),
    Shown("GAS_OIL_RATIO", "Gas-oil ratio", 30813, kGasOilRatio),
    Shown("WATER_CUT", "Water cut", 30825, kNoUnit),
    Shown("WATER_OIL_RATIO", "Water-oil ratio", 30826, kNoUnit),
    Shown(words::kUptimeFraction, "Uptime", 30820, kNoUnit),
    Settable("DRAWDOWN_PIW", "Drawdown PI weighted", 30810, kPressureDifference),
    Settable("DRAWDOWN_REG", "Drawdown region weighted", 30827, kPressureDifference),
    PerComponent("TOTAL_MOLE_FRACTION", "Total mole fraction", 30828, kNoUnit),
    PerComponent("GAS_COMPONENT_MOLAR_RATE", "Gas molar rate", 30829, kMoleRate),
    PerComponent("OIL_COMPONENT_MOLAR_RATE", "Oil molar rate", 30830, kMoleRate),
}};

}  // namespace gantry
