#include "fieldrun/platform/held_program.h"

#include <csignal>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace gantry::fieldrun {
namespace {

HeldEnd Describe(int status) {
  if (WIFSIGNALED(status)) return {fmt::format("by signal {}", WTERMSIG(status)), true};
  return {fmt::format("with status {}", WEXITSTATUS(status))};
}

/// The leader of a session of its own.
class SpawnedProgram : public HeldProgram {
 public:
  explicit SpawnedProgram(pid_t number)
      : number_(number), watch_(static_cast<int>(::syscall(SYS_pidfd_open, number, 0))) {}

  ~SpawnedProgram() override {
    if (end_) return;
    ::kill(-number_, SIGKILL);
    ::waitpid(number_, nullptr, 0);
  }

  std::optional<HeldEnd> WaitForEnd(std::chrono::milliseconds limit) override {
    pollfd watched{watch_.Number(), POLLIN, 0};
    if (!end_ && ::poll(&watched, 1, static_cast<int>(limit.count())) > 0) {
      int status = 0;
      ::waitpid(number_, &status, 0);
      end_ = Describe(status);
    }
    return end_;
  }

 private:
  pid_t number_;
  platform::Descriptor watch_;
  std::optional<HeldEnd> end_;
};

/// What is done between the fork and the program.
class SpawnActions {
 public:
  explicit SpawnActions(const HeldStart& start) {
    ::posix_spawn_file_actions_init(&files_);
    ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&files_, STDOUT_FILENO, start.log.c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::posix_spawn_file_actions_adddup2(&files_, STDOUT_FILENO, STDERR_FILENO);
    ::posix_spawn_file_actions_addchdir_np(&files_, start.folder.c_str());
    ::posix_spawnattr_init(&attributes_);
    sigset_t restored;
    ::sigemptyset(&restored);
    ::sigaddset(&restored, SIGPIPE);
    ::posix_spawnattr_setsigdefault(&attributes_, &restored);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnActions() {
    ::posix_spawn_file_actions_destroy(&files_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  const posix_spawn_file_actions_t* Files() const { return &files_; }
  const posix_spawnattr_t* Attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

std::unique_ptr<HeldProgram> HeldProgram::Start(const HeldStart& start) {
  std::vector<std::string> words = {start.program};
  words.insert(words.end(), start.arguments.begin(), start.arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const SpawnActions actions(start);
  pid_t number = 0;
  const int error = ::posix_spawnp(&number, start.program.c_str(), actions.Files(),
                                   actions.Attributes(), argv.data(), environ);
  if (error == 0) return std::make_unique<SpawnedProgram>(number);
  throw std::runtime_error(fmt::format("{} couldn't be started: {}", start.program,
                                       std::generic_category().message(error)));
}

}  // namespace gantry::fieldrun
