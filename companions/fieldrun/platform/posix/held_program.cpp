#include "fieldrun/platform/held_program.h"

#include <csignal>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/posix/descriptor.h"
#include "platform/posix/spawn.h"

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

void Prepare(const HeldStart& start, platform::SpawnActions& actions) {
  posix_spawn_file_actions_t* const files = actions.Files();
  ::posix_spawn_file_actions_addopen(files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(files, STDOUT_FILENO, start.log.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ::posix_spawn_file_actions_adddup2(files, STDOUT_FILENO, STDERR_FILENO);
  ::posix_spawn_file_actions_addchdir_np(files, start.folder.c_str());
  sigset_t restored;
  ::sigemptyset(&restored);
  ::sigaddset(&restored, SIGPIPE);
  ::posix_spawnattr_setsigdefault(actions.Attributes(), &restored);
  ::posix_spawnattr_setflags(actions.Attributes(), POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);
}

}  // namespace

std::unique_ptr<HeldProgram> HeldProgram::Start(const HeldStart& start) {
  std::vector<std::string> words = {start.program};
  words.insert(words.end(), start.arguments.begin(), start.arguments.end());
  platform::SpawnActions actions;
  Prepare(start, actions);
  pid_t number = 0;
  const int error =
      ::posix_spawnp(&number, start.program.c_str(), actions.Files(), actions.Attributes(),
                     platform::PointersTo(words).data(), environ);
  if (error == 0) return std::make_unique<SpawnedProgram>(number);
  throw std::runtime_error(fmt::format("{} couldn't be started: {}", start.program,
                                       std::generic_category().message(error)));
}

}  // namespace gantry::fieldrun
