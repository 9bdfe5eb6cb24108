#include "host/terminal.h"

#include <cstdio>

#include <io.h>

namespace gantry::fieldrun {

bool IsTerminal() { return ::_isatty(::_fileno(stderr)) != 0; }

void IgnoreBrokenPipes() {}  // a broken pipe only fails the write here

}  // namespace gantry::fieldrun
