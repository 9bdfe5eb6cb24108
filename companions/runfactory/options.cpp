#include "runfactory/options.h"

#include <filesystem>

#include <CLI/CLI.hpp>
#include <unistd.h>

#include "runfactory/program.h"
#include "text/number_text.h"

namespace gantry::cluster {

namespace {

constexpr int kUsageError = 2;
constexpr int kMostSessions = 256;

int ParsePort(const std::string& text) {
  const int port = ParseNumber<int>(text).value_or(-1);
  if (port >= 0 && port <= 65535) return port;
  throw CLI::ValidationError("'" + text + "' is no port");
}

void ParseListen(const std::string& text, Options& options) {
  const size_t colon = text.rfind(':');
  if (colon == std::string::npos) throw CLI::ValidationError("--listen wants ADDRESS:PORT");
  options.address = text.substr(0, colon);
  options.port = static_cast<uint16_t>(ParsePort(text.substr(colon + 1)));
}

void ParseMap(const std::string& text, Options& options) {
  const size_t equals = text.find('=');
  const bool isMap = equals != std::string::npos && equals > 0 && equals + 1 < text.size();
  if (!isMap) throw CLI::ValidationError("--map wants FROM=TO, not '" + text + "'");
  options.maps.push_back({text.substr(0, equals), text.substr(equals + 1)});
}

void ParsePorts(const std::string& text, Options& options) {
  const size_t dash = text.find('-');
  if (dash == std::string::npos) throw CLI::ValidationError("--ports wants FIRST-LAST");
  options.ports.first = static_cast<uint16_t>(ParsePort(text.substr(0, dash)));
  options.ports.last = static_cast<uint16_t>(ParsePort(text.substr(dash + 1)));
  if (options.ports.first == 0 || options.ports.last < options.ports.first) {
    throw CLI::ValidationError("--ports wants FIRST-LAST with FIRST above 0 and not above LAST");
  }
}

void ParseLauncher(const std::string& text, Options& options) {
  if (text != "local" && text != "slurm") {
    throw CLI::ValidationError("--launcher wants local or slurm, not '" + text + "'");
  }
  options.launcher = text == "local" ? LauncherKind::kLocal : LauncherKind::kSlurm;
}

/// Cases lie where others may write: what is started there is settled before, by its absolute path.
void Settle(const char* option, std::string& program) {
  if (program.empty()) return;
  const std::string path = FindProgram(program);
  if (path.empty())
    throw CLI::ValidationError(std::string(option) + ": " + program + " is no program");
  program = path;
}

void SettlePrograms(Options& options) {
  Settle("--mpiexec", options.mpiexec);
  if (options.launcher == LauncherKind::kLocal) return Settle("--simulator", options.simulator);
  // It need not be on this machine.
  if (options.simulator.front() != '/') {
    throw CLI::ValidationError("--simulator: " + options.simulator + " is not absolute");
  }
}

void Check(const Options& options) {
  if (::geteuid() == 0 && !options.mayBeRoot) {
    throw CLI::ValidationError(
        "as root, whoever reaches the port could run anything here: give it a user of its own, or "
        "--allow-root");
  }
  if (options.maps.empty() && options.roots.empty()) {
    throw CLI::ValidationError("no case could be opened: name a --map or a --root");
  }
  for (const PathMap& map : options.maps) {
    if (map.to.front() != '/') throw CLI::ValidationError("--map: " + map.to + " is not absolute");
  }
  for (const std::string& root : options.roots) {
    if (root.front() != '/') throw CLI::ValidationError("--root: " + root + " is not absolute");
  }
  if (options.ports.last - options.ports.first + 1 < options.maxSessions) {
    throw CLI::ValidationError("--ports has fewer ports than there are sessions");
  }
}

}  // namespace

bool ParseOptions(int argc, const char* const* argv, Options& options, int& exitStatus) {
  CLI::App app(
      "Serves drivers that run their simulator on this cluster: starts the simulator for a case "
      "and answers the driver's routines by driving it.",
      "runfactory");
  app.set_version_flag("--version", "runfactory " RUNFACTORY_VERSION);
  std::string listen = options.address + ":" + std::to_string(options.port);
  std::string ports =
      std::to_string(options.ports.first) + "-" + std::to_string(options.ports.last);
  std::vector<std::string> maps;
  std::string launcher = "local";
  app.add_option("--listen", listen, "address and port to take drivers on; port 0 takes any")
      ->capture_default_str();
  app.add_option("--simulator", options.simulator,
                 "the simulator's program; a bare name is looked up in PATH now, not later")
      ->required();
  app.add_option("--map", maps,
                 "FROM=TO: case directories that a driver names below FROM lie below TO here");
  app.add_option("--root", options.roots, "a directory below which cases may be opened");
  app.add_option("--launcher", launcher, "local or slurm")->capture_default_str();
  app.add_option("--max-sessions", options.maxSessions, "how many runs at once")
      ->check(CLI::Range(1, kMostSessions))
      ->capture_default_str();
  app.add_option("--log", options.logFile, "append the log to a file, not standard error");
  app.add_option("--ports", ports, "FIRST-LAST: what the simulators listen on")
      ->capture_default_str();
  app.add_option("--dialogue-seconds", options.dialogueSeconds,
                 "how long a driver may take to say what it wants")
      ->check(CLI::Range(1, 3600))
      ->capture_default_str();
  app.add_option("--start-seconds", options.startSeconds,
                 "how long a simulator may take to come up, waiting in a queue included")
      ->check(CLI::Range(1, 7 * 24 * 3600))
      ->capture_default_str();
  app.add_option("--mpiexec", options.mpiexec, "what starts parallel runs (launcher local)");
  app.add_flag("--allow-root", options.mayBeRoot, "run as root all the same");
  app.add_option("--slurm-option", options.slurmOptions,
                 "an argument for sbatch, such as --partition=long (launcher slurm)");
  try {
    app.parse(argc, argv);
    ParseListen(listen, options);
    ParsePorts(ports, options);
    ParseLauncher(launcher, options);
    for (const std::string& map : maps) ParseMap(map, options);
    Check(options);
    SettlePrograms(options);
  } catch (const CLI::ParseError& outcome) {
    exitStatus = app.exit(outcome) == 0 ? 0 : kUsageError;
    return false;
  }
  return true;
}

std::vector<std::string> MissingDirectories(const Options& options) {
  std::vector<std::string> missing = options.roots;
  for (const PathMap& map : options.maps) missing.push_back(map.to);
  std::error_code ignored;
  std::erase_if(missing,
                [&](const auto& path) { return std::filesystem::is_directory(path, ignored); });
  return missing;
}

}  // namespace gantry::cluster
