#pragma once

#include <optional>
#include <string_view>

#include "described_toml/quantity.h"
#include "simulator_side/well_words.h"

namespace gantry::simulator {

using toml_reader::Quantity;

/// What a limit can be set on. The pressures bound from below for a producer and from above for an
/// injector; the rates and drawdowns from above.
enum class LimitItem {
  kOilProduction,
  kGasProduction,
  kWaterProduction,
  kLiquidProduction,
  kReservoirProduction,
  kOilInjection,
  kGasInjection,
  kWaterInjection,
  kReservoirInjection,
  kBottomHolePressure,
  kTubingHeadPressure,
  kDrawdownIndexWeighted,
  kDrawdownRegion,
};

struct WellLimit {
  LimitItem item;
  double value;  ///< field units
};

/// The words of the external controller for these.
std::string_view WordOf(LimitItem item);
std::optional<WellStatus> FindStatus(std::string_view word);
std::optional<LimitItem> FindLimitItem(std::string_view word);
Quantity QuantityOf(LimitItem item);

inline bool IsAbandoned(WellStatus status) { return status >= WellStatus::kSurfaceAbandoned; }

}  // namespace gantry::simulator
