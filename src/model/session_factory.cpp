#include "model/session_factory.h"

#include "remote/windows_job_session.h"
#include "settings/link_settings.h"

namespace gantry {
namespace {

/// Stands for the cluster where this build has no session for it: its start says so.
class NoClusterSession : public CJobSession {
 public:
  using CJobSession::CJobSession;

  std::string GetHostDescription() override { return {}; }
  int32_t Start(std::string& message) override {
    message = "There is no cluster connection in this build";
    return 1;
  }
};

}  // namespace

std::unique_ptr<CJobSession> MakeSession(const LinkSettings& settings) {
  if (settings.ConnectionMode == 0) return std::make_unique<CWindowsJobSession>(settings);
  return std::make_unique<NoClusterSession>(settings);
}

}  // namespace gantry
