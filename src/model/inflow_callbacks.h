#pragma once

#include "model/inflow_library.h"

namespace gantry {

/// The six functions by which the inflow library drives a model back while it is being called. They
/// run on the thread that is inside the library.
struct ModelCallbacks {
  static const InflowCallbacks& Table();

  static double ElapsedDays(void* model);
  static int32_t Restart(void* model, char* text);
  static int32_t ImposeRate(void* model, int32_t well, double rate, char* text);
  static int32_t Advance(void* model, double days, char* text);
  static int32_t ReadInflow(void* model, int32_t well, void* record, char* text);
  static int32_t ReadCurrent(void* model, int32_t well, void* record, char* text);
};

}  // namespace gantry
