#pragma once

#include <cstdio>

namespace gantry::fieldrun {

/// True when the standard error of this process is a terminal.
bool IsTerminal();

/// Keeps this process's standard output for what fieldrun itself prints. From the first call on,
/// the simulators that the module starts, which inherit the standard streams, and anything else
/// that writes there, write to standard error instead.
std::FILE* UserOutput();

/// Lets a write to a pipe whose reader has gone fail, where it would end the process.
void IgnoreBrokenPipes();

}  // namespace gantry::fieldrun
