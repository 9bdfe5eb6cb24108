#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "runfactory/case_location.h"
#include "runfactory/dialogue.h"
#include "runfactory/options.h"

namespace gantry::cluster {

/// Why a simulator isn't up, fit for the driver's user.
class LaunchFailed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A simulator that was started. Destroying the object leaves it alone: the service ends it, by its
/// name, when the session's process is gone, however that came about.
class Job {
 public:
  virtual ~Job() = default;

  /// What the service ends the job by: one word.
  virtual std::string Name() const = 0;
  /// The host on which the simulator listens, once it has been placed; empty while it waits.
  virtual std::string Node() = 0;
  /// Throws `LaunchFailed` when the simulator has ended.
  virtual void Check() = 0;
};

/// A way of starting simulators. One word of arguments never becomes two, and no shell sees any.
class Launcher {
 public:
  virtual ~Launcher() = default;

  virtual std::unique_ptr<Job> Start(const CaseLocation& location, const RunRequest& request,
                                     uint16_t port) = 0;
  /// Sees to it that the job of that name has ended, giving it a moment to do so by itself.
  virtual void End(const std::string& name) = 0;
};

std::unique_ptr<Launcher> MakeLauncher(const Options& options);
std::unique_ptr<Launcher> MakeLocalLauncher(const Options& options);
std::unique_ptr<Launcher> MakeSlurmLauncher(const Options& options);

/// Puts behind a command what it has to start: the simulator and its arguments for a case.
void AddSimulator(std::vector<std::string>& command, const std::string& simulator,
                  const CaseLocation& location, const RunRequest& request, uint16_t port);
/// The name of the file beside the case that holds what the simulator says.
std::string LogNameOf(const CaseLocation& location);

}  // namespace gantry::cluster
