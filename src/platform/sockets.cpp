#include "platform/sockets.h"

#include <stdexcept>

namespace gantry::platform {

namespace {

SocketCalls* replacement = nullptr;

}  // namespace

SocketCalls& Sockets() { return replacement != nullptr ? *replacement : SystemSockets(); }

SocketCallsOverride::SocketCallsOverride(SocketCalls& calls) : previous_(replacement) {
  replacement = &calls;
}

SocketCallsOverride::~SocketCallsOverride() { replacement = previous_; }

SocketLibrary::SocketLibrary() {
  if (!SystemSockets().StartUp()) throw std::runtime_error("The socket library can't be started");
}

SocketLibrary::~SocketLibrary() { SystemSockets().CleanUp(); }

}  // namespace gantry::platform
