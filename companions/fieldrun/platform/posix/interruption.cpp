#include "fieldrun/platform/interruption.h"

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "fieldrun/platform/terminal.h"

namespace gantry::fieldrun {
namespace {

volatile std::sig_atomic_t isRequested = 0;
volatile std::sig_atomic_t userOutput = STDOUT_FILENO;

void NoteFirst(int signal) {
  isRequested = 1;
  std::signal(signal, SIG_DFL);
}

/// A terminal that is gone refuses every line, which would end the run that is to be finished.
void Silence(int descriptor) {
  termios ignored;
  if (::tcgetattr(descriptor, &ignored) == 0 || errno != EIO) return;
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  ::dup2(nowhere, descriptor);
  ::close(nowhere);
}

/// Comes several times: from the system, and from the shell.
void NoteHangup(int /*signal*/) {
  const int error = errno;
  isRequested = 1;
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO, int{userOutput}}) {
    Silence(descriptor);
  }
  errno = error;
}

void Take(int signal, void (*handler)(int)) {
  if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
}

}  // namespace

void TakeInterruptions() {
  userOutput = ::fileno(UserOutput());
  Take(SIGINT, NoteFirst);
  Take(SIGTERM, NoteFirst);
  Take(SIGHUP, NoteHangup);
}

bool IsInterrupted() { return isRequested != 0; }

// The module starts every program outside the terminal's session.
DeafToInterruptions::DeafToInterruptions() = default;
DeafToInterruptions::~DeafToInterruptions() = default;

}  // namespace gantry::fieldrun
