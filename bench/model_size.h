#pragma once

namespace gantry::bench {

/// How large a model is to be.
struct ModelSize {
  int wells = 0;
  int components = 0;
};

}  // namespace gantry::bench
