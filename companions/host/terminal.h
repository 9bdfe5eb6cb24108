#pragma once

namespace gantry::fieldrun {

/// True when the standard error of this process is a terminal.
bool IsTerminal();

/// Lets a write to a pipe whose reader has gone fail, where it would end the process.
void IgnoreBrokenPipes();

}  // namespace gantry::fieldrun
