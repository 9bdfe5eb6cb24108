#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gantry::cluster {

/// Directories as drivers name them that begin with `from` are found under `to`.
struct PathMap {
  std::string from;
  std::string to;
};

struct PortRange {
  uint16_t first = 9201;
  uint16_t last = 9700;
};

enum class LauncherKind { kLocal, kSlurm };

/// What the service was started with.
struct Options {
  std::string address = "127.0.0.1";
  uint16_t port = 7777;
  std::string simulator;  ///< absolute, as is what else it starts
  std::vector<PathMap> maps;
  std::vector<std::string> roots;
  LauncherKind launcher = LauncherKind::kLocal;
  int maxSessions = 8;
  std::string logFile;
  PortRange ports;
  int dialogueSeconds = 10;
  int startSeconds = 60;
  std::string mpiexec;
  std::vector<std::string> slurmOptions;
  bool mayBeRoot = false;
};

/// Reads the command line. When there is nothing to run (help was asked for, or the line is
/// faulty), `exitStatus` is what to end with, and the reason has been shown.
bool ParseOptions(int argc, const char* const* argv, Options& options, int& exitStatus);

/// What the maps and roots lead to that is no directory at present.
std::vector<std::string> MissingDirectories(const Options& options);

}  // namespace gantry::cluster
