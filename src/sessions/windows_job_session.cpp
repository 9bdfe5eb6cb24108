#include "sessions/windows_job_session.h"

#include "boundary/error_text.h"
#include "platform/port_listeners.h"
#include "sessions/version_code.h"
#include "settings/gantry_app.h"
#include "text/failure_text.h"
#include "text/pieces.h"

namespace gantry {
namespace {

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
// holds it ends the search, and the start is told.
void CWindowsJobSession::TakeSlot() {
  const auto search = platform::NamedMutex::Acquire("GantryDriver");
  for (SlotIndex = 0;; ++SlotIndex) {
    auto attempt = platform::NamedMutex::TryAcquire(FormatText("Gantry%u", SlotIndex));
    if (attempt.outcome == platform::NamedMutex::Outcome::kHeldElsewhere) continue;
    SlotMutexHandle = std::move(attempt.mutex);
    if (SlotMutexHandle == nullptr) slotFailure_ = attempt.reason;
    return;
  }
}

bool CWindowsJobSession::IsRunning() {
  return ProcessHandle != nullptr && ProcessHandle->IsRunning();
}

int32_t CWindowsJobSession::ChoosePort(const LaunchSettings& machine) const {
  const int64_t port = int64_t{machine.StartPort} + SlotIndex;
  return port > machine.EndPort ? kNoPort : static_cast<int32_t>(port);
}

bool CWindowsJobSession::ComposeLaunch(const LaunchSettings& machine, int32_t port, Launch& launch,
                                       std::string& message) const {
  const std::string& simulator =
      Settings.SimExeName.empty() ? machine.SimExecutable : Settings.SimExeName;
  const std::string base = Settings.GetCaseBaseName();
  if (Settings.Parallel >= 2) {
    launch.application = machine.MPIExecutable;
    if (IsBlank(launch.application)) {
      message =
          "A path to mpiexec must be entered in the configuration screen to run parallel jobs";
      return false;
    }
    // Only the first path stands in quotes: the command line is fixed to the letter.
    launch.commandLine = FormatText(
        "\"%s\" -localonly -np %d %s %s --dopt=external_controller_port:%d",
        launch.application.c_str(), Settings.Parallel, simulator.c_str(), base.c_str(), port);
  } else {
    launch.application = simulator;
    launch.commandLine = FormatText("\"%s\" %s --dopt=external_controller_port:%d",
                                    simulator.c_str(), base.c_str(), port);
  }
  if (Settings.StdLogging) launch.commandLine += " --dopt=external_controller_logger";
  if (!IsBlank(machine.CmdLine)) launch.commandLine += " " + machine.CmdLine;
  return true;
}

int32_t CWindowsJobSession::Start(std::string& message) {
  if (IsRunning()) {
    message = "The current simulator process is still running. No new process is created.";
    return 1;
  }
  if (SlotMutexHandle == nullptr) {
    message = "No network port could be reserved for the connection to Intersect: " + slotFailure_;
    return 1;
  }
  const LaunchSettings machine = CGantryApp::Instance().Config.ForLaunch();
  const int32_t port = ChoosePort(machine);
  if (port == kNoPort) {
    message =
        "Tessel has run out of network ports to use for the connection to Intersect. Check "
        "Intersect configuration settings.";
    return 1;
  }
  Launch launch;
  if (!ComposeLaunch(machine, port, launch, message)) return 1;
  return LaunchAndConnect(machine, launch, port, message);
}

// The version follows the machine's simulator, also where the case names another one.
int32_t CWindowsJobSession::LaunchAndConnect(const LaunchSettings& machine, const Launch& launch,
                                             int32_t port, std::string& message) {
  try {
    platform::Bystanders bystanders(static_cast<uint16_t>(port));
    ProcessHandle =
        platform::StartProcess(launch.application, launch.commandLine, Settings.GetCaseDirectory());
    if (ProcessHandle == nullptr) {
      message = "Could not start IX process";
      return 1;
    }
    Connector = CreateLocalConnector(VersionCodeFromPath(machine.SimExecutable),
                                     static_cast<uint32_t>(port), std::move(bystanders));
    return 0;
  } catch (const std::exception& failure) {
    Connector = nullptr;
    message = std::string("Abnormal error: ") + FailureText(failure);
    return 1;
  }
}

}  // namespace gantry
