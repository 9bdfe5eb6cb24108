#pragma once

#include <functional>

#include "platform/posix/descriptor.h"
#include "toolkit/qt/packet.h"

namespace gantry::platform {

/// Calls between two processes over a local socket, either way. Only one of the two works at a
/// time: whoever has called serves the other's calls until its own answer comes. One thread for
/// each end. Everything throws LinkFailure once the other end has gone.
class Link {
 public:
  /// Answers a call of the other end.
  using Serve = std::function<Packet(Packet& call)>;

  Link(Descriptor socket, Serve serve) : socket_(std::move(socket)), serve_(std::move(serve)) {}

  Packet Call(const Packet& call);
  /// Waits for one call of the other end and answers it.
  void ServeOne();

 private:
  enum class Kind : uint64_t { kCall, kAnswer };
  struct Head {
    uint64_t size;
    Kind kind;
  };

  void Send(Kind kind, const Packet& packet);
  Packet Receive(Kind& kind);
  void ReceiveInto(char* place, size_t size);

  Descriptor socket_;
  Serve serve_;
};

}  // namespace gantry::platform
