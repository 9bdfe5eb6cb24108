#pragma once

#include <functional>
#include <string>

#include "client/byte_channel.h"
#include "simulator_side/driver_arguments.h"

namespace gantry::simulator {

/// Waits for the one controller of a run on the port of the command line and lets `serve` speak
/// with it; messages go to BASE.ecreplay when the command line asks for that. Returns the exit
/// status of the program, and has then said on standard error what went wrong. Nobody listens any
/// more once the controller has come.
int ServeController(const std::string& program, const DriverArguments& arguments,
                    const std::function<void(ByteChannel&)>& serve);

}  // namespace gantry::simulator
