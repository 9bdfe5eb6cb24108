#pragma once

#include <functional>
#include <memory>

#include "fieldrun/platform/started_programs.h"

namespace gantry::fieldrun {

/// Stands by for the end of a simulator of this machine, which writes the last of its own results
/// when the host has gone. Made before the start.
class SimulatorEnd {
 public:
  SimulatorEnd();

  /// Waits for it, for a minute at most and only while nothing interrupts. Throws DriverFailure
  /// when the simulator says by its status that something has failed.
  void Await(const std::function<bool()>& isInterrupted);

 private:
  std::unique_ptr<StartedPrograms> programs_;
};

}  // namespace gantry::fieldrun
