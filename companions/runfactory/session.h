#pragma once

#include <string>

#include "platform/posix/descriptor.h"
#include "runfactory/dialogue.h"
#include "runfactory/launcher.h"
#include "runfactory/log.h"
#include "runfactory/options.h"

namespace gantry::cluster {

/// What a session's process works with.
struct SessionTask {
  const Options& options;
  Launcher& launcher;
  const Log& log;
  std::string label;  ///< in front of each line of the log: number and user
  RunRequest request;
  int place;  ///< below the number of sessions; no two live sessions have the same
  platform::Descriptor driver;  ///< the connection, its dialogue at the driver's last line
  platform::Descriptor
      report;  ///< a pipe to the service: takes the name of the job that was started
};

/// One session from the answer of the dialogue to the end of its connection: starts the simulator,
/// tells the driver where it runs, and answers its routines. Runs in a process of its own and ends
/// with it; the service ends the simulator. The result is the exit status of the process.
int RunSession(SessionTask task);

}  // namespace gantry::cluster
