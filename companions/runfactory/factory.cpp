#include "runfactory/factory.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <arpa/inet.h>
#include <fmt/format.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace gantry::cluster {

namespace {

constexpr int kBacklog = 128;
/// Where the sessions begin among what is watched: behind the signals and the listener.
constexpr size_t kFirstSession = 2;

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

platform::Descriptor Listen(const Options& options) {
  const std::string where = fmt::format("{}:{}", options.address, options.port);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(options.port);
  if (::inet_pton(AF_INET, options.address.c_str(), &address.sin_addr) != 1) {
    throw std::runtime_error("cannot listen on " + where + ": not an address");
  }
  platform::Descriptor listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  const int reuse = 1;
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const bool listens =
      listener.IsOpen() &&
      ::setsockopt(listener.Number(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse) == 0 &&
      ::bind(listener.Number(), generic, sizeof address) == 0 &&
      ::listen(listener.Number(), kBacklog) == 0;
  if (!listens) Fail("cannot listen on " + where);
  return listener;
}

platform::Descriptor CatchSignals() {
  sigset_t caught;
  ::sigemptyset(&caught);
  for (const int signal : {SIGCHLD, SIGTERM, SIGINT}) ::sigaddset(&caught, signal);
  ::sigprocmask(SIG_BLOCK, &caught, nullptr);
  platform::Descriptor signals(::signalfd(-1, &caught, SFD_NONBLOCK | SFD_CLOEXEC));
  if (!signals.IsOpen()) Fail("cannot take signals");
  return signals;
}

int MillisecondsUntil(Clock::time_point deadline) {
  if (deadline == Clock::time_point::max()) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  return static_cast<int>(std::max<int64_t>(0, left.count()));
}

}  // namespace

Factory::Factory(const Options& options, const Log& log)
    : log_(log),
      launcher_(MakeLauncher(options)),
      sessions_(options, *launcher_, log),
      peers_(log, options.dialogueSeconds,
             [this](platform::Descriptor socket, const Dialogue& dialogue) {
               sessions_.Begin(std::move(socket), dialogue);
             }),
      listener_(Listen(options)),
      signals_(CatchSignals()) {
  ::signal(SIGPIPE, SIG_IGN);
  // Simulators of sessions that have crashed come to this process as its children.
  ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

uint16_t Factory::Port() const {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(listener_.Number(), reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

void Factory::Run() {
  while (!isStopping_ || !sessions_.AreOver()) Turn();
}

void Factory::Turn() {
  const Clock::time_point now = Clock::now();
  const Clock::time_point next = std::min(peers_.Expire(now), sessions_.Expire(now));
  std::vector<pollfd> watched = {{signals_.Number(), POLLIN, 0}, {listener_.Number(), POLLIN, 0}};
  sessions_.Watch(watched);
  const size_t firstPeer = watched.size();
  peers_.Watch(watched);
  if (::poll(watched.data(), watched.size(), MillisecondsUntil(next)) <= 0) return;
  sessions_.Serve(watched.data() + kFirstSession);
  peers_.Serve(watched.data() + firstPeer);
  if (watched[1].revents != 0) peers_.Accept(listener_.Number());
  if (watched[0].revents != 0) TakeSignals();
}

void Factory::TakeSignals() {
  signalfd_siginfo taken{};
  while (::read(signals_.Number(), &taken, sizeof taken) == static_cast<ssize_t>(sizeof taken)) {
    if (taken.ssi_signo == SIGCHLD) {
      ReapChildren();
    } else {
      BeginStop();
    }
  }
}

void Factory::ReapChildren() {
  int status = 0;
  for (pid_t process = 0; (process = ::waitpid(-1, &status, WNOHANG)) > 0;) {
    sessions_.Reap(process, status);
  }
}

void Factory::BeginStop() {
  if (!isStopping_) log_.Write("stops");
  isStopping_ = true;
  listener_.Reset();
  peers_.Clear();
  sessions_.Stop();
}

}  // namespace gantry::cluster
