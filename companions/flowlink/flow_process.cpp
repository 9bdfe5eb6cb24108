#include "flowlink/flow_process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "flowlink/flow_log.h"
#include "flowlink/link_fault.h"
#include "platform/posix/spawn.h"

namespace gantry::flowlink {

namespace {

constexpr const char* kSocketVariable = "FLOWLINK_SOCKET";
constexpr int kNoSuchProgram = 127;

/// What the new process does between the fork and the program; nothing here takes a lock.
struct Launch {
  std::vector<char*> argv;
  std::vector<char*> environment;
  std::string folder;
  std::string log;
  int socket = -1;
  int fault = -1;  ///< where the reason goes if the program can't be started
  pid_t starter = 0;
};

[[noreturn]] void BecomeProgram(const Launch& launch) {
  ::setpgid(0, 0);
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const bool isOrphan = ::getppid() != launch.starter;
  const int log = ::open(launch.log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  const bool isReady = !isOrphan && log >= 0 && null >= 0 && ::dup2(null, 0) >= 0 &&
                       ::dup2(log, 1) >= 0 && ::dup2(log, 2) >= 0 &&
                       ::chdir(launch.folder.c_str()) == 0;
  ::fcntl(launch.socket, F_SETFD, 0);
  if (isReady) ::execvpe(launch.argv[0], launch.argv.data(), launch.environment.data());
  const int reason = errno;
  (void)!::write(launch.fault, &reason, sizeof reason);
  ::_exit(kNoSuchProgram);
}

/// The environment of this process, with what the script and flow need. A fork of flow lacks the
/// helper threads of the message-passing library, so that its end mustn't wait for them. A run on
/// one processor needs no daemon of that library, nor the displays of this machine that it looks
/// for: it would end when one of them does.
std::vector<std::string> Environment(int socket) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable)
    variables.emplace_back(*variable);
  variables.push_back(std::string(kSocketVariable) + "=" + std::to_string(socket));
  variables.emplace_back("OMPI_MCA_async_mpi_finalize=1");
  variables.emplace_back("OMPI_MCA_ess_singleton_isolated=1");
  variables.emplace_back("HWLOC_COMPONENTS=-gl");
  return variables;
}

}  // namespace

FlowProcess::FlowProcess(const std::vector<std::string>& arguments,
                         const std::filesystem::path& folder, const std::string& log,
                         PlaceOf placeOf)
    : log_(folder / log), placeOf_(std::move(placeOf)) {
  int ends[2];
  int faultEnds[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0 ||
      ::pipe2(faultEnds, O_CLOEXEC) != 0) {
    throw LinkFault(std::string("no socket for flow: ") + std::strerror(errno));
  }
  socket_ = platform::Descriptor(ends[0]);
  platform::Descriptor socketOfFlow(ends[1]);
  const platform::Descriptor faults(faultEnds[0]);
  platform::Descriptor faultsOfFlow(faultEnds[1]);
  std::vector<std::string> texts = arguments;
  std::vector<std::string> variables = Environment(socketOfFlow.Number());
  const Launch launch = {
      platform::PointersTo(texts), platform::PointersTo(variables), folder.string(), log_.string(),
      socketOfFlow.Number(),       faultsOfFlow.Number(),           ::getpid()};
  process_ = ::fork();
  if (process_ == 0) BecomeProgram(launch);
  int reason = process_ < 0 ? errno : 0;
  socketOfFlow.Reset();
  faultsOfFlow.Reset();
  if (process_ > 0) (void)!::read(faults.Number(), &reason, sizeof reason);
  if (reason == 0) return;
  if (process_ > 0) ::waitpid(process_, nullptr, 0);
  throw LinkFault("can't start " + arguments.front() + ": " + std::strerror(reason));
}

FlowProcess::~FlowProcess() {
  socket_.Reset();
  ::kill(-process_, SIGKILL);
  WaitForEnd();
}

bool FlowProcess::WriteLine(const std::string& line) {
  const std::string text = line + "\n";
  return platform::MoveAll(text.data(), text.size(), [this](const char* next, size_t left) {
    return ::send(socket_.Number(), next, left, MSG_NOSIGNAL);
  });
}

bool FlowProcess::ReadLine(std::string& line) {
  size_t searched = 0;
  for (;;) {
    const size_t end = received_.find('\n', searched);
    if (end != std::string::npos) {
      line = received_.substr(0, end);
      received_.erase(0, end + 1);
      return true;
    }
    searched = received_.size();
    char part[65536];
    const ssize_t got =
        platform::WithoutInterrupts([&] { return ::recv(socket_.Number(), part, sizeof part, 0); });
    if (got <= 0) return false;
    received_.append(part, static_cast<size_t>(got));
  }
}

void FlowProcess::WaitForEnd() {
  if (hasEnded_) return;
  platform::WithoutInterrupts([this] { return ::waitpid(process_, &status_, 0); });
  hasEnded_ = true;
}

std::string FlowProcess::DescribeEnd() {
  WaitForEnd();
  std::string end = "flow ended";
  if (WIFEXITED(status_)) end += " with status " + std::to_string(WEXITSTATUS(status_));
  if (WIFSIGNALED(status_)) end += " by signal " + std::to_string(WTERMSIG(status_));
  std::ifstream log(log_, std::ios::binary);
  const std::string said((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
  const std::string reason = LastErrorIn(said);
  const std::string place = placeOf_(reason);
  if (!place.empty()) end = place + ": " + end;
  return end + (reason.empty() ? "" : ": " + reason) + "; its log is " + log_.string();
}

}  // namespace gantry::flowlink
