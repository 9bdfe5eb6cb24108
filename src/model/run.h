#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "boundary/records.h"
#include "model/calendar_date.h"
#include "platform/lock.h"
#include "sessions/job_session.h"

namespace gantry {

/// A model's running simulator: the session, the clock, and the request to stop. `Lock` guards the
/// session and all talk to the simulator; it is the model's only lock.
///
/// Its holder may take it again. What needs that is a callback: the host that is told of a run-up,
/// or the inflow library that is given the wells of a start, may call the model from inside.
class Run {
 public:
  using Work = std::function<int32_t(CExtConnectorBase&)>;

  /// True while a simulator lives. Safe from any thread.
  bool IsRunning();
  /// True between a start and a stop, for those without the lock.
  bool HasSession() const { return hasSession_; }
  /// Ends the session. The request stands before the lock is taken, so that a start on another
  /// thread ends after its present step and lets this one in.
  void Stop();
  /// Where the simulator runs, if it does.
  std::optional<std::string> HostDescription();

  /// Forgets the last session and its times.
  void Clear() GANTRY_REQUIRES(Lock);
  /// Starts a simulator and reads its clock. A failure leaves no session.
  int32_t Open(const LinkSettings& settings, ExtErrorBlock* err) GANTRY_REQUIRES(Lock);
  void Drop() GANTRY_REQUIRES(Lock);
  /// Null without a session.
  CExtConnectorBase* Connector() GANTRY_REQUIRES(Lock);
  /// Does the work on the connector. What it throws becomes a failure of the text "doing: <...>".
  int32_t Talk(ExtErrorBlock* err, std::string_view doing, const Work& work) GANTRY_REQUIRES(Lock);
  /// Takes the lock, and does so where a simulator lives; else fails.
  int32_t With(ExtErrorBlock* err, std::string_view doing, const Work& work);

  /// Runs the simulator on. Its target moves first: a session that fails here isn't used again.
  int32_t Advance(CExtConnectorBase& connector, double days, ExtErrorBlock* err);

  platform::CriticalSection Lock;
  std::atomic<bool> StopRequested = false;
  double CurrentElapsedDays = -1.0;  ///< the simulator's time
  double StartElapsedDays = -1.0;    ///< from the deck's start to its date at the connection
  double SimulatorDays = -1.0;       ///< last told to reach, counted like `StartElapsedDays`
  CalendarDate SimulationDate;       ///< the simulator's date at the connection

 private:
  void ReadClock(CExtConnectorBase& connector);

  std::unique_ptr<CJobSession> session_ GANTRY_GUARDED_BY(Lock);
  std::atomic<bool> hasSession_ = false;
};

}  // namespace gantry
