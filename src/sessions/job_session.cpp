#include "sessions/job_session.h"

#include <cstdlib>
#include <limits>

#include "platform/environment.h"

namespace gantry {
namespace {

constexpr size_t kScenarioCapacity = 16;

/// The batch scheduler's scenario plus 1, or 0 outside of one.
int32_t ReadScenarioNumber() {
  const auto job = platform::ReadEnvironment("LSB_JOBID", std::numeric_limits<size_t>::max());
  const auto scenario = platform::ReadEnvironment("LSF_TESSEL_SCENARIO", kScenarioCapacity);
  if (!job || !scenario || scenario->empty()) return 0;
  return static_cast<int32_t>(std::strtoll(scenario->c_str(), nullptr, 10) + 1);
}

}  // namespace

CJobSession::CJobSession(const LinkSettings& settings)
    : Settings(settings), ScenarioNumber(ReadScenarioNumber()) {}

bool CJobSession::StopIfRunning() { return IsRunning() && Kill() != 0; }

CJobSession::~CJobSession() {
  if (Connector == nullptr) return;
  try {
    Connector->Shutdown();
  } catch (const std::exception&) {
    // The simulator may be gone already; its connection is dropped either way.
  }
}

}  // namespace gantry
