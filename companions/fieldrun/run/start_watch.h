#pragma once

#include <thread>

namespace gantry::fieldrun {

/// Stands by while the module starts a simulator of this machine. The module knocks at the
/// simulator's port for a minute, whether the simulator lives or not; when it has ended, this tells
/// so at once on standard error, below what the simulator itself has said there. Its own thread
/// looks; made and destroyed around the start.
class StartWatch {
 public:
  StartWatch();

 private:
  std::jthread thread_;
};

}  // namespace gantry::fieldrun
