#include "cluster/launcher.h"

namespace gantry::cluster {

std::unique_ptr<Launcher> MakeLauncher(const Options& options) {
  return options.launcher == LauncherKind::kSlurm ? MakeSlurmLauncher(options)
                                                  : MakeLocalLauncher(options);
}

std::vector<std::string> SimulatorArguments(const CaseLocation& location, const RunRequest& request,
                                            uint16_t port) {
  std::vector<std::string> arguments = {location.baseName,
                                        "--dopt=external_controller_port:" + std::to_string(port)};
  if (request.logging) arguments.emplace_back("--dopt=external_controller_logger");
  return arguments;
}

std::string LogNameOf(const CaseLocation& location) { return location.baseName + "_factory.log"; }

}  // namespace gantry::cluster
