#include "model/session_factory.h"

#include "sessions/linux_job_session.h"
#include "sessions/windows_job_session.h"
#include "settings/link_settings.h"

namespace gantry {

std::unique_ptr<CJobSession> MakeSession(const LinkSettings& settings) {
  if (settings.ConnectionMode == 0) return std::make_unique<CWindowsJobSession>(settings);
  return std::make_unique<CLinuxJobSession>(settings);
}

}  // namespace gantry
