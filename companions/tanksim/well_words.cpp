#include "tanksim/well_words.h"

#include <algorithm>
#include <array>
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

std::string_view WordOf(LimitItem item) { return kLimits[static_cast<size_t>(item)].word; }

std::optional<WellStatus> FindStatus(std::string_view word) {
  const auto found = std::ranges::find(kStatusWords, word);
  if (found == kStatusWords.end()) return std::nullopt;
  return static_cast<WellStatus>(found - kStatusWords.begin());
}

std::optional<LimitItem> FindLimitItem(std::string_view word) {
  const auto found = std::ranges::find(kLimits, word, &LimitWord::word);
  if (found == kLimits.end()) return std::nullopt;
  return static_cast<LimitItem>(found - kLimits.begin());
}

Quantity QuantityOf(LimitItem item) { return kLimits[static_cast<size_t>(item)].quantity; }

}  // namespace gantry::simulator
