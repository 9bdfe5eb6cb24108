#include "fieldrun/platform/terminal.h"

#include <cstdio>

#include <io.h>

namespace gantry::fieldrun {

bool IsTerminal() { return ::_isatty(::_fileno(stderr)) != 0; }

std::FILE* UserOutput() {
  static std::FILE* const output = [] {
    const int own = ::_dup(1);
    std::FILE* const file = own < 0 ? nullptr : ::_fdopen(own, "w");
    if (file == nullptr) return stdout;
    ::_dup2(2, 1);
    return file;
  }();
  return output;
}

void IgnoreBrokenPipes() {}  // a broken pipe only fails the write here

}  // namespace gantry::fieldrun
