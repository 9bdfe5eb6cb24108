#pragma once

#include <chrono>

namespace gantry::fieldrun {

/// Tells where time goes: each moment since it was made is charged to one account.
class Stopwatch {
 public:
  /// Adds the seconds since the last charge to an account.
  void Charge(double& account) {
    const Clock::time_point now = Clock::now();
    account += std::chrono::duration<double>(now - last_).count();
    last_ = now;
  }

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point last_ = Clock::now();
};

}  // namespace gantry::fieldrun
