#include "host/terminal.h"

#include <csignal>

#include <unistd.h>

namespace gantry::fieldrun {

bool IsTerminal() { return ::isatty(STDERR_FILENO) != 0; }

void IgnoreBrokenPipes() { std::signal(SIGPIPE, SIG_IGN); }

}  // namespace gantry::fieldrun
