#include "remote/windows_job_session.h"

#include "host/boundary/error_text.h"
#include "platform/lock.h"
#include "remote/version_code.h"
#include "settings/gantry_app.h"

namespace gantry {
namespace {

/// Guards the reading of the two port settings.
platform::CriticalSection& PortSection() {
  static platform::CriticalSection section;
  return section;
}

const CIXConfig& Config() { return CGantryApp::Instance().Config; }

constexpr int32_t kNoPort = -1;

}  // namespace

CWindowsJobSession::CWindowsJobSession(const LinkSettings& settings) : CJobSession(settings) {
  TakeSlot();
}

CWindowsJobSession::~CWindowsJobSession() {
  StopIfRunning();
  SlotMutexHandle.reset();
}

// One process at a time searches; a slot that can't be had for another reason than that somebody
// holds it ends the search all the same.
void CWindowsJobSession::TakeSlot() {
  const auto search = platform::NamedMutex::Acquire("GantryDriver");
  for (SlotIndex = 0;; ++SlotIndex) {
    auto attempt = platform::NamedMutex::TryAcquire(FormatText("Gantry%u", SlotIndex));
    if (attempt.outcome == platform::NamedMutex::Outcome::kHeldElsewhere) continue;
    SlotMutexHandle = std::move(attempt.mutex);
    return;
  }
}

bool CWindowsJobSession::IsRunning() {
  return ProcessHandle != nullptr && ProcessHandle->IsRunning();
}

int32_t CWindowsJobSession::ChoosePort() const {
  const platform::SingleLock lock(PortSection());
  const int64_t port = int64_t{Config().StartPort} + SlotIndex;
  return port > Config().EndPort ? kNoPort : static_cast<int32_t>(port);
}

bool CWindowsJobSession::ComposeLaunch(int32_t port, Launch& launch, std::string& message) const {
  const std::string& simulator =
      Settings.SimExeName.empty() ? Config().SimExecutable : Settings.SimExeName;
  const std::string base = Settings.GetCaseBaseName();
  if (Settings.Parallel >= 2) {
    launch.application = Config().MPIExecutable;
    if (IsBlank(launch.application)) {
      message =
          "A path to mpiexec must be entered in the configuration screen to run parallel jobs";
      return false;
    }
    // Only the first path stands in quotes; simulators have been started so ever since.
    launch.commandLine = FormatText(
        "\"%s\" -localonly -np %d %s %s --dopt=external_controller_port:%d",
        launch.application.c_str(), Settings.Parallel, simulator.c_str(), base.c_str(), port);
  } else {
    launch.application = simulator;
    launch.commandLine = FormatText("\"%s\" %s --dopt=external_controller_port:%d",
                                    simulator.c_str(), base.c_str(), port);
  }
  if (Settings.StdLogging) launch.commandLine += " --dopt=external_controller_logger";
  if (!IsBlank(Config().CmdLine)) launch.commandLine += " " + Config().CmdLine;
  return true;
}

int32_t CWindowsJobSession::Start(std::string& message) {
  if (IsRunning()) {
    message = "The current simulator process is still running. No new process is created.";
    return 1;
  }
  const int32_t port = ChoosePort();
  if (port == kNoPort) {
    message =
        "Tessel has run out of network ports to use for the connection to Intersect. Check "
        "Intersect configuration settings.";
    return 1;
  }
  Launch launch;
  if (!ComposeLaunch(port, launch, message)) return 1;
  ProcessHandle =
      platform::StartProcess(launch.application, launch.commandLine, Settings.GetCaseDirectory());
  if (ProcessHandle == nullptr) {
    message = "Could not start IX process";
    return 1;
  }
  return Connect(port, message);
}

// The version follows the machine's simulator, also where the case names another one.
int32_t CWindowsJobSession::Connect(int32_t port, std::string& message) {
  try {
    Connector = CreateLocalConnector(VersionCodeFromPath(Config().SimExecutable),
                                     static_cast<uint32_t>(port));
    return 0;
  } catch (const std::exception& failure) {
    Connector = nullptr;
    message = std::string("Abnormal error: ") + failure.what();
    return 1;
  }
}

}  // namespace gantry
