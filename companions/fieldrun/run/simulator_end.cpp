#include "fieldrun/run/simulator_end.h"

#include <chrono>
#include <thread>

#include <fmt/format.h>

#include "fieldrun/driver/driver_model.h"

namespace gantry::fieldrun {

SimulatorEnd::SimulatorEnd() : programs_(StartedPrograms::Watch()) {}

void SimulatorEnd::Await(const std::function<bool()>& isInterrupted) {
  const auto latest = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (!isInterrupted() && std::chrono::steady_clock::now() < latest) {
    if (const auto end = programs_->End()) {
      if (!end->isFailure) return;
      throw DriverFailure(fmt::format(
          "the run is complete, but the simulator has then ended {}; its own results may not be "
          "whole",
          end->how));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

}  // namespace gantry::fieldrun
