#pragma once

#include <list>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/types.h>

#include "platform/posix/descriptor.h"
#include "runfactory/dialogue.h"
#include "runfactory/launcher.h"
#include "runfactory/log.h"
#include "runfactory/options.h"
#include "runfactory/pending_peers.h"

namespace gantry::cluster {

/// The sessions that run, each in a process of its own. When that process has gone, whatever the
/// reason, a second one ends its simulator, and then its place is free again.
class Sessions {
 public:
  Sessions(const Options& options, Launcher& launcher, const Log& log);

  /// Starts a session, or tells the driver why not.
  void Begin(platform::Descriptor driver, const Dialogue& dialogue);
  /// Takes note of a child process that has ended.
  void Reap(pid_t process, int status);
  /// Ends the processes of all sessions.
  void Stop();
  bool AreOver() const { return sessions_.empty(); }

  void Watch(std::vector<pollfd>& watched) const;
  /// `events` are those of `Watch`, in its order.
  void Serve(const pollfd* events);
  /// Ends sessions whose driver has gone and that haven't ended by themselves; the result is when
  /// to come again.
  Clock::time_point Expire(Clock::time_point now);

 private:
  struct Session {
    int place = 0;
    std::string label;
    pid_t process = -1;  ///< of the session, then of what ends its simulator
    bool isClosing = false;
    platform::Descriptor driver;  ///< watched for its end, not read
    platform::Descriptor report;  ///< the session tells the name of its job
    std::string job;
    Clock::time_point deadline = Clock::time_point::max();
  };

  int FreePlace() const;
  void Fork(Session& session, const RunRequest& request, platform::Descriptor reportEnd);
  void ReadReport(Session& session);
  /// False when there is nothing to end.
  bool BeginClosing(Session& session);

  const Options& options_;
  Launcher& launcher_;
  const Log& log_;
  std::list<Session> sessions_;
  int lastNumber_ = 0;
};

}  // namespace gantry::cluster
