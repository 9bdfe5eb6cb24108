#include "platform/sockets.h"

namespace gantry::platform {

namespace {

SocketCalls* replacement = nullptr;

}  // namespace

SocketCalls& Sockets() { return replacement != nullptr ? *replacement : SystemSockets(); }

SocketCallsOverride::SocketCallsOverride(SocketCalls& calls) : previous_(replacement) {
  replacement = &calls;
}

SocketCallsOverride::~SocketCallsOverride() { replacement = previous_; }

}  // namespace gantry::platform
