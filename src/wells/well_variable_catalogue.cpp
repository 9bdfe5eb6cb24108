#include "wells/well_variable_catalogue.h"

#include "client/unit_converter.h"
#include "client/words.h"

namespace gantry {

const std::array<WellVariable, 29> WellVariableCatalogue = {{
    {words::kOilProductionRate, words::kOilProductionRate, "Oil production rate", 30801,
     kLiquidRate, 1},
    {"OIL_PRODUCTION_CUML", "", "Oil production cuml", 30816, kLiquidVolume, 1},
    {words::kWaterProductionRate, words::kWaterProductionRate, "Water production rate", 30803,
     kLiquidRate, 1},
    {"WATER_PRODUCTION_CUML", "", "Water production cuml", 30818, kLiquidVolume, 1},
    {words::kGasProductionRate, words::kGasProductionRate, "Gas production rate", 30805, kGasRate,
     1},
    {"GAS_PRODUCTION_CUML", "", "Gas production cuml", 30811, kGasVolume, 1},
    {words::kOilInjectionRate, words::kOilInjectionRate, "Oil injection rate", 30802, kLiquidRate,
     1},
    {"OIL_INJECTION_CUML", "", "Oil injection cuml", 30817, kLiquidVolume, 1},
    {words::kWaterInjectionRate, words::kWaterInjectionRate, "Water injection rate", 30804,
     kLiquidRate, 1},
    {"WATER_INJECTION_CUML", "", "Water injection cuml", 30819, kLiquidVolume, 1},
    {words::kGasInjectionRate, words::kGasInjectionRate, "Gas injection rate", 30806, kGasRate, 1},
    {"GAS_INJECTION_CUML", "", "Gas injection cuml", 30812, kGasVolume, 1},
    {words::kLiquidProductionRate, words::kLiquidProductionRate, "Liquid production rate", 30814,
     kLiquidRate, 1},
    {"LIQUID_PRODUCTION_CUML", "", "Liquid production cuml", 30815, kLiquidVolume, 1},
    {words::kReservoirProductionRate, words::kReservoirProductionRate, "Reservoir production rate",
     30821, kLiquidRate, 1},
    {"RES_VOLUME_PRODUCTION_CUML", "", "Reservoir production cuml", 30823, kLiquidVolume, 1},
    {words::kReservoirInjectionRate, words::kReservoirInjectionRate, "Reservoir injection rate",
     30822, kLiquidRate, 1},
    {"RES_VOLUME_INJECTION_CUML", "", "Reservoir injection cuml", 30824, kLiquidVolume, 1},
    {words::kBottomHolePressure, words::kBottomHolePressure, "Bottom hole pressure", 30807,
     kPressure, 1},
    {words::kTubingHeadPressure, words::kTubingHeadPressure, "Tubing head pressure", 30808,
     kPressure, 1},
    {"GAS_OIL_RATIO", "", "Gas-oil ratio", 30813, kGasOilRatio, 1},
    {"WATER_CUT", "", "Water cut", 30825, kNoUnit, 1},
    {"WATER_OIL_RATIO", "", "Water-oil ratio", 30826, kNoUnit, 1},
    {words::kUptimeFraction, "", "Uptime", 30820, kNoUnit, 1},
    {"DRAWDOWN_PIW", "DRAWDOWN_PIW", "Drawdown PI weighted", 30810, kPressureDifference, 1},
    {"DRAWDOWN_REG", "DRAWDOWN_REG", "Drawdown region weighted", 30827, kPressureDifference, 1},
    {"TOTAL_MOLE_FRACTION", "", "Total mole fraction", 30828, kNoUnit, 0},
    {"GAS_COMPONENT_MOLAR_RATE", "", "Gas molar rate", 30829, kMoleRate, 0},
    {"OIL_COMPONENT_MOLAR_RATE", "", "Oil molar rate", 30830, kMoleRate, 0},
}};

}  // namespace gantry
