#include "tanksim/well_words.h"

#include <array>
#include <cstddef>

namespace gantry::simulator {

namespace {

constexpr std::array<std::string_view, 3> kTypes = {"PRODUCER", "WATER_INJECTOR", "GAS_INJECTOR"};
constexpr std::array<std::string_view, 5> kStatuses = {
    "OPEN", "SURFACE_SHUTIN", "ALL_COMPLETIONS_SHUTIN", "SURFACE_ABANDONED",
    "ALL_COMPLETIONS_ABANDONED"};

struct LimitWord {
  std::string_view word;
  Quantity quantity;
};
constexpr std::array<LimitWord, 13> kLimits = {{
    {"OIL_PRODUCTION_RATE", Quantity::kLiquid},
    {"GAS_PRODUCTION_RATE", Quantity::kGas},
    {"WATER_PRODUCTION_RATE", Quantity::kLiquid},
    {"LIQUID_PRODUCTION_RATE", Quantity::kLiquid},
    {"RES_VOLUME_PRODUCTION_RATE", Quantity::kReservoirVolume},
    {"OIL_INJECTION_RATE", Quantity::kLiquid},
    {"GAS_INJECTION_RATE", Quantity::kGas},
    {"WATER_INJECTION_RATE", Quantity::kLiquid},
    {"RES_VOLUME_INJECTION_RATE", Quantity::kReservoirVolume},
    {"BOTTOM_HOLE_PRESSURE", Quantity::kPressure},
    {"TUBING_HEAD_PRESSURE", Quantity::kPressure},
    {"DRAWDOWN_PIW", Quantity::kPressure},
    {"DRAWDOWN_REG", Quantity::kPressure},
}};

}  // namespace

std::string_view WordOf(WellType type) { return kTypes[static_cast<size_t>(type)]; }

std::span<const std::string_view> StatusWords() { return kStatuses; }

std::string_view WordOf(WellStatus status) { return kStatuses[static_cast<size_t>(status)]; }

std::string_view WordOf(LimitItem item) { return kLimits[static_cast<size_t>(item)].word; }

std::optional<WellStatus> FindStatus(std::string_view word) {
  for (size_t i = 0; i < kStatuses.size(); ++i) {
    if (kStatuses[i] == word) return static_cast<WellStatus>(i);
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
