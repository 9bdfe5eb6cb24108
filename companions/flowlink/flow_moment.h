#pragma once

#include <optional>
#include <vector>

#include <nlohmann/json.hpp>

#include "flowlink/deck_composer.h"
#include "flowlink/well_controls.h"

namespace gantry::flowlink {

/// A stop that a session has come to.
struct PastStop {
  double days;
  std::optional<RestartPoint> way;  ///< by which a run comes there; empty for the deck's start
};

/// What a session has to know of its past to go on at its last stop, beside flow's own files.
struct FlowMoment {
  int runs = 1;                                   ///< of flow, whose files are numbered
  std::vector<PastStop> stops;                    ///< up to the present one
  std::vector<HostControls> controls;             ///< of each well, as the host has set them
  std::vector<std::optional<double>> shutByFlow;  ///< since which day
  std::vector<bool> isTold;                       ///< whether a well's overrides have been told
};

nlohmann::json ToJson(const FlowMoment& moment);
/// Throws an exception of the JSON library for what isn't such a moment.
FlowMoment FlowMomentOf(const nlohmann::json& text);

}  // namespace gantry::flowlink
