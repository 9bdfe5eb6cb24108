#pragma once

#include <stdexcept>

#include "gantry/inflow.h"
#include "gantry/records.h"

namespace gantry::inflow {

/// A callback that failed, with its text.
class CallbackError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The six callbacks, as the module gives them.
struct CallbackSet {
  IPRElapsedDays elapsedDays = nullptr;
  IPRRestart restart = nullptr;
  IPRImposeRate imposeRate = nullptr;
  IPRAdvance advance = nullptr;
  IPRReadInflow readInflow = nullptr;
  IPRReadCurrent readCurrent = nullptr;
};

/// The simulator as the library can drive it: the six callbacks with the model that they are for.
/// All but `ElapsedDays` throw `CallbackError`.
class SimulatorCallbacks {
 public:
  explicit SimulatorCallbacks(void* model) : model_(model) {}

  void Set(const CallbackSet& calls) { calls_ = calls; }
  bool AreComplete() const;

  double ElapsedDays() const { return calls_.elapsedDays(model_); }
  void Restart() const;
  /// The rate is of oil for a producer, of gas for a gas injector, of water for another; 0 shuts.
  void ImposeRate(int32_t well, double rate) const;
  /// Runs the simulator on, and reads all wells again. Throws too when no time has gone by.
  void Advance(double days) const;
  void ReadInflow(int32_t well, _tGetSetData& record) const;
  /// Pressure and rates of the well, at entry 0 of their arrays.
  void ReadCurrent(int32_t well, _tGetSetData& record) const;

 private:
  void* model_;
  CallbackSet calls_;
};

}  // namespace gantry::inflow
