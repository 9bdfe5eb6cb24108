#pragma once

#include <cstdint>

#include "model_size.h"

namespace gantry::bench {

/// The peer of both sides of a comparison, in a process of its own. Its first guest is served by a
/// simulated field of that size until one whole step has gone by, and is answered from the
/// recording of that step from then on. Every further guest is handed the recording, and may then
/// ask for the same answers. Returns when a guest asks for the end of the run, or the first one has
/// gone.
void RunReplayPeer(uint16_t port, ModelSize size);

}  // namespace gantry::bench
