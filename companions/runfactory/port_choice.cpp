#include "runfactory/port_choice.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/posix/descriptor.h"
#include "runfactory/launcher.h"

namespace gantry::cluster {

namespace {

/// Nobody listens on the port. One that is still cooling down from an earlier connection counts as
/// free, as it does for a simulator.
bool IsFree(uint16_t port) {
  const platform::Descriptor probe(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const int reuse = 1;
  ::setsockopt(probe.Number(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  address.sin_port = htons(port);
  return ::bind(probe.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
         ::listen(probe.Number(), 1) == 0;
}

}  // namespace

uint16_t ChoosePort(const Options& options, int place) {
  const int last = options.ports.last;
  for (int port = options.ports.first + place; port <= last; port += options.maxSessions) {
    if (IsFree(static_cast<uint16_t>(port))) return static_cast<uint16_t>(port);
  }
  throw LaunchFailed("The run factory has run out of network ports for simulators");
}

}  // namespace gantry::cluster
