#include "fieldrun/platform/terminal.h"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace gantry::fieldrun {

bool IsTerminal() { return ::isatty(STDERR_FILENO) != 0; }

std::FILE* UserOutput() {
  static std::FILE* const output = [] {
    const int own = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    std::FILE* const file = own < 0 ? nullptr : ::fdopen(own, "w");
    if (file == nullptr) return stdout;
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
    return file;
  }();
  return output;
}

void IgnoreBrokenPipes() { std::signal(SIGPIPE, SIG_IGN); }

}  // namespace gantry::fieldrun
