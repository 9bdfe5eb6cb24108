#include "platform/process.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <limits>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "platform/command_line.h"
#include "platform/posix/linked_process.h"

// The new process is a grandchild, whose parent ends at once: it belongs to the system from the
// start, so nothing is left to reap whenever and however it ends. It is watched by a process
// descriptor. That descriptor is taken while the grandchild waits for the word to go on, before
// it becomes the program, so its number can't have passed to another process.

namespace gantry::platform {

namespace {

class DetachedProcess : public ChildProcess {
 public:
  explicit DetachedProcess(Descriptor process) : process_(std::move(process)) {}

  bool IsRunning() override {
    if (!process_.IsOpen()) return false;
    pollfd state{process_.Number(), POLLIN, 0};
    const bool ended = ::poll(&state, 1, 0) > 0;
    if (ended) process_.Reset();
    return !ended;
  }

 private:
  Descriptor process_;
};

/// The two ends of the talk between the starter and the new process, each way.
struct Channel {
  Descriptor starter;
  Descriptor started;
};

bool OpenChannel(Channel& channel) {
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  channel.starter = Descriptor(ends[0]);
  channel.started = Descriptor(ends[1]);
  return true;
}

template <class Value>
bool Send(const Descriptor& end, const Value& value) {
  return MoveAll(reinterpret_cast<const char*>(&value), sizeof value,
                 [&](const char* next, size_t left) {
                   return ::send(end.Number(), next, left, MSG_NOSIGNAL);
                 });
}

template <class Value>
bool Receive(const Descriptor& end, Value& value) {
  return MoveAll(reinterpret_cast<char*>(&value), sizeof value,
                 [&](char* next, size_t left) { return ::recv(end.Number(), next, left, 0); });
}

/// What the new process needs, made ready before the fork: between the fork and the program only
/// calls are allowed that take no lock and no memory.
struct Launch {
  std::string application;
  std::string directory;
  std::vector<std::string> arguments;
  std::vector<char*> argv;
  Channel channel;  ///< up: the number, then an error if there is one; down: the word to go on
  Descriptor standardInput;  ///< not open: the starter's own
};

void KeepOnlyStandardDescriptors() {
  if (::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC) == 0) return;
  const long most = ::sysconf(_SC_OPEN_MAX);
  for (int number = 3; number < most; ++number) ::fcntl(number, F_SETFD, FD_CLOEXEC);
}

void TakeStandardInput(const Descriptor& input) {
  if (!input.IsOpen()) return;
  ::dup2(input.Number(), STDIN_FILENO);
  ::fcntl(STDIN_FILENO, F_SETFD, 0);  // where it had that number already
}

void RestoreSignals() {
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : {SIGPIPE, SIGCHLD}) ::signal(number, SIG_DFL);
}

/// Closes what lies between two descriptors, which stay open.
void CloseBetween(int below, int above) {
  if (above - below > 1) {
    ::close_range(static_cast<unsigned>(below) + 1, static_cast<unsigned>(above) - 1, 0);
  }
}

/// Done before the starter hears of this process, so that what the starter closes from then on,
/// such as the socket of a lock, is closed for good.
void KeepOnlyWhatTheLaunchNeeds(const Launch& launch) {
  const auto [low, high] = std::minmax({std::max(launch.channel.started.Number(), STDERR_FILENO),
                                        std::max(launch.standardInput.Number(), STDERR_FILENO)});
  CloseBetween(STDERR_FILENO, low);
  CloseBetween(low, high);
  CloseBetween(high, std::numeric_limits<int>::max());
}

[[noreturn]] void BecomeProgram(const Launch& launch) {
  KeepOnlyWhatTheLaunchNeeds(launch);
  const Descriptor& starter = launch.channel.started;
  char go = 0;
  if (Send(starter, ::getpid()) && Receive(starter, go)) {
    ::setsid();
    TakeStandardInput(launch.standardInput);
    KeepOnlyStandardDescriptors();
    RestoreSignals();
    if (launch.directory.empty() || ::chdir(launch.directory.c_str()) == 0) {
      ::execv(launch.application.c_str(), launch.argv.data());
    }
    (void)Send(starter, errno);
  }
  ::_exit(127);
}

/// Forks twice; the process between the two has ended when this returns.
bool ForkTwice(Launch& launch) {
  const pid_t between = ::fork();
  if (between < 0) return false;
  if (between == 0) {
    launch.channel.starter.Reset();
    const pid_t child = ::fork();
    if (child == 0) BecomeProgram(launch);
    ::_exit(child < 0 ? 1 : 0);
  }
  launch.channel.started.Reset();
  WithoutInterrupts([&] { return ::waitpid(between, nullptr, 0); });
  return true;
}

std::string MakeAbsolute(const std::string& application) {
  std::error_code error;
  const auto path = std::filesystem::absolute(application, error);
  return error ? application : path.string();
}

Launch Prepare(const std::string& application, const std::string& commandLine,
               const std::string& directory) {
  Launch launch;
  launch.application = MakeAbsolute(application);
  launch.directory = directory;
  launch.arguments = SplitCommandLine(commandLine);
  if (launch.arguments.empty()) launch.arguments.push_back(application);
  for (std::string& argument : launch.arguments) launch.argv.push_back(argument.data());
  launch.argv.push_back(nullptr);
  return launch;
}

/// The process that has become the program; not open when there is none.
Descriptor Start(Launch& launch) {
  if (!OpenChannel(launch.channel) || !ForkTwice(launch)) return Descriptor();
  const Descriptor& started = launch.channel.starter;
  pid_t child = 0;
  if (!Receive(started, child)) return Descriptor();
  Descriptor process(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
  if (!process.IsOpen() || !Send(started, 'g')) return Descriptor();
  int error = 0;
  return Receive(started, error) ? Descriptor() : std::move(process);
}

}  // namespace

std::unique_ptr<ChildProcess> StartProcess(const std::string& application,
                                           const std::string& commandLine,
                                           const std::string& directory) {
  if (application.empty()) return nullptr;
  Launch launch = Prepare(application, commandLine, directory);
  Descriptor process = Start(launch);
  if (!process.IsOpen()) return nullptr;
  return std::make_unique<DetachedProcess>(std::move(process));
}

Descriptor StartLinkedProcess(const std::string& application) {
  Launch launch = Prepare(application, "", "");
  Channel link;
  if (!OpenChannel(link)) return Descriptor();
  launch.standardInput = std::move(link.started);
  return Start(launch).IsOpen() ? std::move(link.starter) : Descriptor();
}

}  // namespace gantry::platform
