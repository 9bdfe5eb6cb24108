#pragma once

#include <array>
#include <string_view>

#include "client/words.h"

namespace gantry::simulator {

/// What a well is, in the order of each simulator's own kinds.
inline constexpr std::array<std::string_view, 3> kTypeWords = {
    words::kProducer, words::kWaterInjector, words::kGasInjector};

/// From what can be taken back at once to what can't be taken back at all.
inline constexpr std::array<std::string_view, 5> kStatusWords = {
    words::kOpen, words::kSurfaceShut, words::kCompletionsShut, "SURFACE_ABANDONED",
    "ALL_COMPLETIONS_ABANDONED"};

}  // namespace gantry::simulator
