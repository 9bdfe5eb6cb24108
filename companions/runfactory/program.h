#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace gantry::cluster {

/// The absolute path of a program: one with a directory is taken from the present one, a bare name
/// is looked up in the absolute directories of PATH. Empty when there is no such program.
std::string FindProgram(const std::string& name);

/// A program to start: its arguments as a list, which no shell looks at. The first is the program's
/// path, which nothing is searched for.
struct Program {
  std::vector<std::string> arguments;
  int directory = -1;    ///< descriptor of the folder to start in, -1 for the present one
  int output = -1;       ///< descriptor for its output and its errors, -1 for none
  bool ownGroup = true;  ///< the leader of a process group of its own
};

/// Starts a program with no descriptor but the standard three. Throws runtime_error with the
/// reason.
pid_t StartProgram(const Program& program);

struct Outcome {
  int exitStatus = -1;  ///< -1 when it was ended by a signal
  std::string output;   ///< what it said, errors included, up to 64 KiB
};

/// Runs a program to its end, or ends it when it takes longer than that.
Outcome RunProgram(const std::vector<std::string>& arguments, int limitSeconds);

/// "exit status 1" or "signal 9", by what `waitpid` tells.
std::string HowItEnded(int status);

/// Waits until the process is gone, whoever's child it is; false when it isn't after that time.
bool WaitForExit(pid_t process, int limitMilliseconds);

/// Ends the process group of a program: waits for it to go by itself, asks it to, and then makes
/// it.
void EndProgram(pid_t process, int patienceMilliseconds);

}  // namespace gantry::cluster
