#include "model/run.h"

#include <cmath>
#include <stdexcept>

#include "boundary/day_zero.h"
#include "model/model_failure.h"
#include "sessions/linux_job_session.h"
#include "sessions/windows_job_session.h"
#include "settings/link_settings.h"
#include "text/failure_text.h"

namespace gantry {
namespace {

using DateQuery = void (CExtConnectorBase::*)(int32_t&, int32_t&, int32_t&);

std::chrono::sys_days ReadDate(CExtConnectorBase& connector, DateQuery query) {
  int32_t day = 0, month = 0, year = 0;
  (connector.*query)(day, month, year);
  if (const CalendarDate date = MakeDate(day, month, year)) return *date;
  throw std::runtime_error(FormatText("%d/%d/%d is no date", day, month, year));
}

std::unique_ptr<CJobSession> MakeSession(const LinkSettings& settings) {
  if (settings.ConnectionMode != kLocalComputer) {
    return std::make_unique<CLinuxJobSession>(settings);
  }
  return std::make_unique<CWindowsJobSession>(settings);
}

}  // namespace

bool Run::IsRunning() {
  const platform::SingleLock lock(Lock);
  return session_ != nullptr && session_->IsRunning();
}

void Run::Stop() {
  StopRequested = true;
  if (!hasSession_) return;
  const platform::SingleLock lock(Lock);
  Drop();
}

std::optional<std::string> Run::HostDescription() {
  const platform::SingleLock lock(Lock);
  if (!IsRunning()) return std::nullopt;
  return session_->GetHostDescription();
}

void Run::Drop() {
  session_.reset();
  hasSession_ = false;
}

void Run::Clear() {
  CurrentElapsedDays = StartElapsedDays = SimulatorDays = -1.0;
  SimulationDate = {};
  Drop();
}

int32_t Run::Open(const LinkSettings& settings, ExtErrorBlock* err) {
  session_ = MakeSession(settings);
  hasSession_ = true;
  std::string message;
  if (session_->Start(message) != 0) {
    Drop();
    return FailWith(err, "Could not start the simulator process", message);
  }
  const auto readClock = [this](CExtConnectorBase& connector) {
    ReadClock(connector);
    return 0;
  };
  if (Talk(err, "Simulator communication error", readClock) == 0) return 0;
  Drop();
  return 1;
}

void Run::ReadClock(CExtConnectorBase& connector) {
  CurrentElapsedDays = connector.GetTimeDays();
  const auto date = ReadDate(connector, &CExtConnectorBase::GetDate);
  SimulationDate = date;
  const auto start = ReadDate(connector, &CExtConnectorBase::GetStartDate);
  const double days = DayNumber(date) - DayNumber(start);
  StartElapsedDays = std::abs(days) <= kMaxDateDifference ? days : 0.0;
}

CExtConnectorBase* Run::Connector() {
  return session_ == nullptr ? nullptr : session_->Connector.get();
}

int32_t Run::Talk(ExtErrorBlock* err, std::string_view doing, const Work& work) {
  try {
    return work(*session_->Connector);
  } catch (const std::exception& failure) {
    return FailWith(err, doing, FailureText(failure));
  }
}

int32_t Run::With(ExtErrorBlock* err, std::string_view doing, const Work& work) {
  const platform::SingleLock lock(Lock);
  if (!IsRunning()) return Fail(err, "The simulation process is not running.");
  return Talk(err, doing, work);
}

int32_t Run::Advance(CExtConnectorBase& connector, double days, ExtErrorBlock* err) {
  SimulatorDays += days;
  connector.RunUntil(SimulatorDays);
  if (connector.GetTerminationFlag()) return Fail(err, "The Intersect simulation ended");
  CurrentElapsedDays += days;
  return 0;
}

}  // namespace gantry
