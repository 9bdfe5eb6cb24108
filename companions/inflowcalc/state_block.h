#pragma once

#include <optional>

#include "inflowcalc/callers_file.h"
#include "inflowcalc/inflow_model.h"

namespace gantry::inflow {

/// Writes the ratios as one block at the file's position: docs/inflow.md shows the format.
/// False when the file doesn't take it.
bool SaveState(const WellRatios& ratios, const CallersFile& file);

/// Reads a block from the file's position. None when there is no whole, sound block:
/// bytes that aren't a block of this library leave the position where it was, and a damaged block
/// is stepped over, so that either way what follows can be read.
std::optional<WellRatios> LoadState(const CallersFile& file);

}  // namespace gantry::inflow
