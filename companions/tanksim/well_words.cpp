#include "tanksim/well_words.h"

#include <array>
#include <cstddef>

#include "simulator_side/well_words.h"

namespace gantry::simulator {

namespace {

struct LimitWord {
  std::string_view word;
  Quantity quantity;
};
constexpr std::array<LimitWord, 13> kLimits = {{
    {words::kOilProductionRate, Quantity::kLiquid},
    {words::kGasProductionRate, Quantity::kGas},
    {words::kWaterProductionRate, Quantity::kLiquid},
    {words::kLiquidProductionRate, Quantity::kLiquid},
    {words::kReservoirProductionRate, Quantity::kReservoirVolume},
    {words::kOilInjectionRate, Quantity::kLiquid},
    {words::kGasInjectionRate, Quantity::kGas},
    {words::kWaterInjectionRate, Quantity::kLiquid},
    {words::kReservoirInjectionRate, Quantity::kReservoirVolume},
    {words::kBottomHolePressure, Quantity::kPressure},
    {words::kTubingHeadPressure, Quantity::kPressure},
    {"DRAWDOWN_PIW", Quantity::kPressure},
    {"DRAWDOWN_REG", Quantity::kPressure},
}};

}  // namespace

std::string_view WordOf(WellType type) { return kTypeWords[static_cast<size_t>(type)]; }

std::string_view WordOf(WellStatus status) { return kStatusWords[static_cast<size_t>(status)]; }

std::string_view WordOf(LimitItem item) { return kLimits[static_cast<size_t>(item)].word; }

std::optional<WellStatus> FindStatus(std::string_view word) {
  for (size_t i = 0; i < kStatusWords.size(); ++i) {
    if (kStatusWords[i] == word) return static_cast<WellStatus>(i);
  }
  return std::nullopt;
}

std::optional<LimitItem> FindLimitItem(std::string_view word) {
  for (size_t i = 0; i < kLimits.size(); ++i) {
    if (kLimits[i].word == word) return static_cast<LimitItem>(i);
  }
  return std::nullopt;
}

Quantity QuantityOf(LimitItem item) { return kLimits[static_cast<size_t>(item)].quantity; }

}  // namespace gantry::simulator
