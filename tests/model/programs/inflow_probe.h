#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gantry/inflow.h"

/// An inflow library that does what a test tells it and writes down what it was told. The test
/// finds it by its one further export.
struct InflowProbe {
  std::vector<std::string> calls;
  void* model = nullptr;  ///< the model that made the library's last handle

  // The model's callbacks.
  IPRElapsedDays elapsedDays = nullptr;
  IPRRestart restart = nullptr;
  IPRImposeRate imposeRate = nullptr;
  IPRAdvance advance = nullptr;
  IPRReadInflow readInflow = nullptr;
  IPRReadCurrent readCurrent = nullptr;

  // What a transformation does.
  int32_t pointsAfter = -1;    ///< the number of points that it leaves, when not negative
  int32_t restartsInside = 0;  ///< it starts the simulator anew
  int32_t readsInside = -1;    ///< it reads the inflow of another well
};

extern "C" InflowProbe* TheInflowProbe();
