#include "runfactory/sessions.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include "runfactory/program.h"
#include "runfactory/session.h"
#include "text/failure_text.h"

namespace gantry::cluster {

namespace {

constexpr std::chrono::seconds kPatienceWithoutDriver{2};
constexpr short kDriverGone = POLLRDHUP | POLLHUP | POLLERR;

void CloseBetween(int first, int last) {
  if (first <= last) ::close_range(static_cast<unsigned>(first), static_cast<unsigned>(last), 0);
}

/// A child process keeps the standard descriptors and those given, so that it holds nobody else's
/// connection open; it takes signals as a program of its own does, and ends with the service.
void BecomeChild(std::vector<int> kept) {
  std::sort(kept.begin(), kept.end());
  int next = STDERR_FILENO + 1;
  for (const int fd : kept) {
    CloseBetween(next, fd - 1);
    next = std::max(next, fd + 1);
  }
  CloseBetween(next, INT_MAX);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
}

}  // namespace

Sessions::Sessions(const Options& options, Launcher& launcher, const Log& log)
    : options_(options), launcher_(launcher), log_(log) {}

int Sessions::FreePlace() const {
  int place = 0;
  const auto isTaken = [&place](const Session& session) { return session.place == place; };
  while (std::any_of(sessions_.begin(), sessions_.end(), isTaken)) ++place;
  return place;
}

void Sessions::Begin(platform::Descriptor driver, const Dialogue& dialogue) {
  const RunRequest& request = dialogue.Request();
  std::string reason = dialogue.Refusal();
  if (reason.empty() && std::ssize(sessions_) >= options_.maxSessions) {
    reason =
        fmt::format("The run factory is full: it runs {} sessions already", options_.maxSessions);
  }
  std::array<int, 2> ends{};
  if (reason.empty() && ::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    reason = "The run factory has no room for a session";
  }
  if (!reason.empty()) {
    log_.Write(request.user + " is refused: " + reason);
    SendBriefly(driver.Number(), FramedText(reason));
    return;
  }
  const int place = FreePlace();
  Session& session = sessions_.emplace_back();
  session.place = place;
  session.label = fmt::format("session {} ({})", ++lastNumber_, request.user);
  session.driver = std::move(driver);
  session.report = platform::Descriptor(ends[0]);
  Fork(session, request, platform::Descriptor(ends[1]));
}

void Sessions::Fork(Session& session, const RunRequest& request, platform::Descriptor reportEnd) {
  session.process = ::fork();
  if (session.process > 0) return;
  if (session.process == 0) {
    BecomeChild({log_.Descriptor(), session.driver.Number(), reportEnd.Number()});
    SessionTask task{.options = options_,
                     .launcher = launcher_,
                     .log = log_,
                     .label = session.label,
                     .request = request,
                     .place = session.place,
                     .driver = std::move(session.driver),
                     .report = std::move(reportEnd)};
    std::_Exit(RunSession(std::move(task)));
  }
  const std::string reason =
      std::string("The run factory can't start a session: ") + std::strerror(errno);
  log_.Write(session.label + ": " + reason);
  SendBriefly(session.driver.Number(), FramedText(reason));
  sessions_.pop_back();
}

void Sessions::Watch(std::vector<pollfd>& watched) const {
  for (const Session& session : sessions_) {
    const bool awaitsItsEnd = session.isClosing || session.deadline != Clock::time_point::max();
    watched.push_back({awaitsItsEnd ? -1 : session.driver.Number(), POLLRDHUP, 0});
  }
}

void Sessions::Serve(const pollfd* events) {
  for (Session& session : sessions_) {
    if (((events++)->revents & kDriverGone) == 0) continue;
    session.deadline = Clock::now() + kPatienceWithoutDriver;
  }
}

Clock::time_point Sessions::Expire(Clock::time_point now) {
  Clock::time_point next = Clock::time_point::max();
  for (Session& session : sessions_) {
    if (session.isClosing) continue;
    if (session.deadline <= now) {
      log_.Write(session.label + ": its driver has gone");
      ::kill(session.process, SIGTERM);
      session.deadline = now + kPatienceWithoutDriver;
    }
    next = std::min(next, session.deadline);
  }
  return next;
}

void Sessions::Reap(pid_t process, int status) {
  const auto session =
      std::find_if(sessions_.begin(), sessions_.end(),
                   [process](const Session& other) { return other.process == process; });
  if (session == sessions_.end()) return;
  if (!session->isClosing) {
    log_.Write(session->label + ": its process has ended, " + HowItEnded(status));
    if (BeginClosing(*session)) return;
  }
  log_.Write(session->label + ": its place is free");
  sessions_.erase(session);
}

void Sessions::ReadReport(Session& session) {
  std::array<char, 64> line{};
  const ssize_t count = platform::WithoutInterrupts(
      [&] { return ::read(session.report.Number(), line.data(), line.size()); });
  if (count <= 0) return;
  const std::string_view text(line.data(), static_cast<size_t>(count));
  session.job = text.substr(0, text.find('\n'));
}

bool Sessions::BeginClosing(Session& session) {
  ReadReport(session);
  session.driver.Reset();
  session.report.Reset();
  if (session.job.empty()) return false;
  session.isClosing = true;
  session.process = ::fork();
  if (session.process > 0) return true;
  const bool isChild = session.process == 0;  // where there is none, the other drivers wait
  if (isChild) BecomeChild({log_.Descriptor()});
  try {
    launcher_.End(session.job);
  } catch (const std::exception& failure) {
    log_.Write(session.label + ": " + FailureText(failure));
  }
  if (isChild) std::_Exit(0);
  return false;
}

void Sessions::Stop() {
  for (const Session& session : sessions_) {
    if (!session.isClosing) ::kill(session.process, SIGTERM);
  }
}

}  // namespace gantry::cluster
