#include "runfactory/launcher.h"

namespace gantry::cluster {

std::unique_ptr<Launcher> MakeLauncher(const Options& options) {
  return options.launcher == LauncherKind::kSlurm ? MakeSlurmLauncher(options)
                                                  : MakeLocalLauncher(options);
}

void AddSimulator(std::vector<std::string>& command, const std::string& simulator,
                  const CaseLocation& location, const RunRequest& request, uint16_t port) {
  command.push_back(simulator);
  command.push_back(location.baseName);
  command.push_back("--dopt=external_controller_port:" + std::to_string(port));
  if (request.logging) command.emplace_back("--dopt=external_controller_logger");
}

std::string LogNameOf(const CaseLocation& location) { return location.baseName + "_factory.log"; }

}  // namespace gantry::cluster
