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
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

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

class SpawnActions {
 public:
  SpawnActions() { ::posix_spawn_file_actions_init(&actions_); }
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  posix_spawn_file_actions_t* Get() { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

class SpawnAttributes {
 public:
  explicit SpawnAttributes(bool ownGroup) {
    ::posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t all;
    ::sigemptyset(&none);
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    const int group = ownGroup ? POSIX_SPAWN_SETPGROUP : 0;
    ::posix_spawnattr_setpgroup(&attributes_, 0);
    ::posix_spawnattr_setflags(
        &attributes_, static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | group));
  }
  ~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  const posix_spawnattr_t* Get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

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
  std::vector<char*> arguments;
  for (const std::string& argument : program.arguments) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  SpawnActions actions;
  ::posix_spawn_file_actions_addopen(actions.Get(), STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  if (program.output >= 0) {
    ::posix_spawn_file_actions_adddup2(actions.Get(), program.output, STDOUT_FILENO);
  } else {
    ::posix_spawn_file_actions_addopen(actions.Get(), STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ::posix_spawn_file_actions_adddup2(actions.Get(), STDOUT_FILENO, STDERR_FILENO);
  if (program.directory >= 0) {
    ::posix_spawn_file_actions_addfchdir_np(actions.Get(), program.directory);
  }
  ::posix_spawn_file_actions_addclosefrom_np(actions.Get(), STDERR_FILENO + 1);
  const SpawnAttributes attributes(program.ownGroup);
  pid_t process = -1;
  const int error = ::posix_spawn(&process, arguments.front(), actions.Get(), attributes.Get(),
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
