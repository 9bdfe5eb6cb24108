#include "fieldrun/platform/interruption.h"

#include <csignal>

#include "platform/windows/win32.h"

namespace gantry::fieldrun {
namespace {

volatile std::sig_atomic_t isRequested = 0;

void NoteFirst(int signal) {
  isRequested = 1;
  std::signal(signal, SIG_DFL);
}

}  // namespace

void TakeInterruptions() {
  std::signal(SIGINT, NoteFirst);
  std::signal(SIGTERM, NoteFirst);
  std::signal(SIGBREAK, NoteFirst);  // Ctrl-Break, and a console that is closed
}

bool IsInterrupted() { return isRequested != 0; }

// A process that ignores Ctrl-C hands that on to those that it starts.
DeafToInterruptions::DeafToInterruptions() { SetConsoleCtrlHandler(nullptr, TRUE); }
DeafToInterruptions::~DeafToInterruptions() { SetConsoleCtrlHandler(nullptr, FALSE); }

}  // namespace gantry::fieldrun
