#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "client/words.h"

// What the protocol says a well is, and how it stands: the words stand in the order of the values.

namespace gantry::simulator {

enum class WellType { kProducer, kWaterInjector, kGasInjector };

inline constexpr std::array<std::string_view, 3> kTypeWords = {
    words::kProducer, words::kWaterInjector, words::kGasInjector};

/// From what can be taken back at once to what can't be taken back at all.
enum class WellStatus {
  kOpen,
  kSurfaceShut,
  kCompletionsShut,
  kSurfaceAbandoned,
  kCompletionsAbandoned
};

inline constexpr std::array<std::string_view, 5> kStatusWords = {
    words::kOpen, words::kSurfaceShut, words::kCompletionsShut, "SURFACE_ABANDONED",
    "ALL_COMPLETIONS_ABANDONED"};

inline std::string_view WordOf(WellType type) { return kTypeWords[static_cast<size_t>(type)]; }
inline std::string_view WordOf(WellStatus status) {
  return kStatusWords[static_cast<size_t>(status)];
}

}  // namespace gantry::simulator
