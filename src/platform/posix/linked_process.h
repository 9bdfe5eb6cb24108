#pragma once

#include <string>

#include "platform/posix/descriptor.h"

namespace gantry::platform {

/// Starts a program whose standard input is the other end of the answer, a local socket. All else
/// is as with `StartProcess`. The answer isn't open when the program couldn't be started.
Descriptor StartLinkedProcess(const std::string& application);

}  // namespace gantry::platform
