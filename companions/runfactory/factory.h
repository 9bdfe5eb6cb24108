#pragma once

#include <memory>

#include "platform/posix/descriptor.h"
#include "runfactory/launcher.h"
#include "runfactory/log.h"
#include "runfactory/options.h"
#include "runfactory/pending_peers.h"
#include "runfactory/sessions.h"

namespace gantry::cluster {

/// The service itself: one loop in one thread, which hears those who connect, gives each run a
/// process, and sees to what its children leave behind. Throws runtime_error when it can't begin.
class Factory {
 public:
  Factory(const Options& options, const Log& log);

  /// Where drivers are taken.
  uint16_t Port() const;
  /// Serves until a signal asks it to stop and every session is over.
  void Run();

 private:
  void TakeSignals();
  void ReapChildren();
  void BeginStop();
  /// Waits for the next event, and no longer than to the next deadline, and serves it.
  void Turn();

  const Log& log_;
  std::unique_ptr<Launcher> launcher_;
  Sessions sessions_;
  PendingPeers peers_;
  platform::Descriptor listener_;
  platform::Descriptor signals_;
  bool isStopping_ = false;
};

}  // namespace gantry::cluster
