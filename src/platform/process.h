#pragma once

#include <memory>
#include <string>

namespace gantry::platform {

/// A process that this module has started. Destroying the object leaves the process alone: nothing
/// in the driver ends a simulator by force.
class ChildProcess {
 public:
  virtual ~ChildProcess() = default;

  /// True while the process lives. Once it has answered false it always does.
  virtual bool IsRunning() = 0;
};

/// Starts `application` with `commandLine` in `directory`. An empty one is passed on as it is:
/// POSIX takes it for the present directory, Windows starts nothing there.
///
/// The command line is one text, as on Windows; where the system wants a list of arguments it is
/// split at blanks outside double quotes, with no shell and no expansion. The child inherits no
/// descriptor but the standard three and leaves no zombie behind; on POSIX it leads a session of
/// its own, which no terminal's signals reach.
/// Returns null when the process couldn't be started.
std::unique_ptr<ChildProcess> StartProcess(const std::string& application,
                                           const std::string& commandLine,
                                           const std::string& directory);

}  // namespace gantry::platform
