#include "runfactory/program.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"
#include "platform/posix/spawn.h"

namespace gantry::cluster {

namespace {

constexpr size_t kMostOutput = 65536;
constexpr int kTerminationMilliseconds = 3000;

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

bool IsProgram(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

/// The program takes signals as one of its own does, whatever the service blocks or ignores.
void TakeSignalsAnew(posix_spawnattr_t* attributes, bool ownGroup) {
  sigset_t none;
  sigset_t all;
  ::sigemptyset(&none);
  ::sigfillset(&all);
  ::posix_spawnattr_setsigmask(attributes, &none);
  ::posix_spawnattr_setsigdefault(attributes, &all);
  const int group = ownGroup ? POSIX_SPAWN_SETPGROUP : 0;
  ::posix_spawnattr_setpgroup(attributes, 0);
  ::posix_spawnattr_setflags(
      attributes, static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | group));
}

int MillisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
  return static_cast<int>(std::max<int64_t>(0, left.count()));
}

/// Reads to the end of the pipe; false when that hasn't come by the deadline.
bool ReadAll(int pipe, Clock::time_point deadline, std::string& text) {
  std::array<char, 4096> block{};
  for (;;) {
    pollfd waiting = {pipe, POLLIN, 0};
    const auto wait = [&] { return ::poll(&waiting, 1, MillisecondsUntil(deadline)); };
    if (platform::WithoutInterrupts(wait) <= 0) return false;
    const ssize_t count =
        platform::WithoutInterrupts([&] { return ::read(pipe, block.data(), block.size()); });
    if (count <= 0) return true;
    const size_t room = kMostOutput - text.size();
    text.append(block.data(), std::min(static_cast<size_t>(count), room));
  }
}

}  // namespace

std::string FindProgram(const std::string& name) {
  std::error_code error;
  if (name.find('/') != std::string::npos) {
    const fs::path path = fs::absolute(name, error).lexically_normal();
    return !error && IsProgram(path) ? path.string() : "";
  }
  const char* const variable = std::getenv("PATH");
  std::istringstream path(variable != nullptr ? variable : "");
  for (std::string folder; std::getline(path, folder, ':');) {
    if (folder.starts_with('/') && IsProgram(folder + "/" + name)) return folder + "/" + name;
  }
  return {};
}

pid_t StartProgram(const Program& program) {
  std::vector<std::string> words = program.arguments;
  const std::vector<char*> arguments = platform::PointersTo(words);
  platform::SpawnActions actions;
  posix_spawn_file_actions_t* const files = actions.Files();
  ::posix_spawn_file_actions_addopen(files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  if (program.output >= 0) {
    ::posix_spawn_file_actions_adddup2(files, program.output, STDOUT_FILENO);
  } else {
    ::posix_spawn_file_actions_addopen(files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ::posix_spawn_file_actions_adddup2(files, STDOUT_FILENO, STDERR_FILENO);
  if (program.directory >= 0) ::posix_spawn_file_actions_addfchdir_np(files, program.directory);
  ::posix_spawn_file_actions_addclosefrom_np(files, STDERR_FILENO + 1);
  TakeSignalsAnew(actions.Attributes(), program.ownGroup);
  pid_t process = -1;
  const int error = ::posix_spawn(&process, arguments.front(), files, actions.Attributes(),
                                  arguments.data(), environ);
  if (error == 0) return process;
  throw std::runtime_error("cannot start " + program.arguments.front() + ": " +
                           std::strerror(error));
}

Outcome RunProgram(const std::vector<std::string>& arguments, int limitSeconds) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error(std::string("cannot make a pipe: ") + std::strerror(errno));
  }
  const platform::Descriptor readEnd(ends[0]);
  platform::Descriptor writeEnd(ends[1]);
  const pid_t process = StartProgram({.arguments = arguments, .output = writeEnd.Number()});
  writeEnd.Reset();
  Outcome outcome;
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(limitSeconds);
  if (!ReadAll(readEnd.Number(), deadline, outcome.output)) ::kill(-process, SIGKILL);
  int status = 0;
  platform::WithoutInterrupts([&] { return ::waitpid(process, &status, 0); });
  if (WIFEXITED(status)) outcome.exitStatus = WEXITSTATUS(status);
  return outcome;
}

std::string HowItEnded(int status) {
  if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
  return "exit status " + std::to_string(WEXITSTATUS(status));
}

bool WaitForExit(pid_t process, int limitMilliseconds) {
  const platform::Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (!handle.IsOpen()) return true;
  pollfd waiting = {handle.Number(), POLLIN, 0};
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(limitMilliseconds);
  return platform::WithoutInterrupts(
             [&] { return ::poll(&waiting, 1, MillisecondsUntil(deadline)); }) > 0;
}

void EndProgram(pid_t process, int patienceMilliseconds) {
  if (!WaitForExit(process, patienceMilliseconds)) {
    ::kill(-process, SIGTERM);
    WaitForExit(process, kTerminationMilliseconds);
  }
  // It, or whatever it has left behind in its group.
  ::kill(-process, SIGKILL);
  WaitForExit(process, kTerminationMilliseconds);
}

}  // namespace gantry::cluster
