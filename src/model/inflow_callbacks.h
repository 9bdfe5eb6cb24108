#pragma once

#include "boundary/records.h"
#include "model/inflow_functions.h"

namespace gantry {

/// What drives a model for the inflow library, on the thread that is inside the library. The
/// library knows it as `CExtModel`. Results are those of the host's operations.
class InflowDriver {
 public:
  virtual ~InflowDriver() = default;

  virtual double ElapsedDays() const = 0;
  /// Starts the simulator from its beginning, with every well connected.
  virtual int32_t Restart(ExtErrorBlock* err) = 0;
  /// Sets the one rate of a well that counts for its type; a rate of 0 shuts it.
  virtual int32_t ImposeRate(int32_t well, double rate, ExtErrorBlock* err) = 0;
  /// Runs the simulator on and reads the wells.
  virtual int32_t Advance(double days, ExtErrorBlock* err) = 0;
  virtual int32_t ReadInflow(int32_t well, _tGetSetData& record, ExtErrorBlock* err) = 0;
  /// The well's present state, into the first points.
  virtual int32_t ReadCurrent(int32_t well, _tGetSetData& record, ExtErrorBlock* err) = 0;
};

/// The same as functions of a `CExtModel`, for the library.
extern const InflowCallbacks kInflowCallbacks;

}  // namespace gantry
