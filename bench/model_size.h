#pragma once

namespace gantry::bench {

/// How large a model is to be.
struct ModelSize {
  int wells = 0;
  int components = 0;
  int peerSpins = 0;  ///< 1: its simulator waits awake, asking time and again; 0: asleep
};

}  // namespace gantry::bench
