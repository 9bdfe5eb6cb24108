#include "platform/named_mutex.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <system_error>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "platform/posix/descriptor.h"

// A mutex is a listening Unix socket in the abstract namespace: its name is taken by one process of
// the machine's network namespace at a time, whoever's it is, like a port's number, and the system
// frees it when the process dies. Nobody ever accepts: who waits has a connection that breaks when
// the holder goes.

namespace gantry::platform {

namespace {

class SocketMutex : public NamedMutex {
 public:
  explicit SocketMutex(Descriptor socket) : socket_(std::move(socket)) {}

 private:
  Descriptor socket_;
};

struct Address {
  sockaddr_un bytes{};
  socklen_t size = 0;

  const sockaddr* Generic() const { return reinterpret_cast<const sockaddr*>(&bytes); }
};

/// False when the name is too long for an address. A byte of 0 in front marks it as abstract.
bool MakeAddress(const std::string& name, Address& address) {
  if (name.size() + 1 > sizeof address.bytes.sun_path) {
    errno = ENAMETOOLONG;
    return false;
  }
  address.bytes.sun_family = AF_UNIX;
  std::memcpy(address.bytes.sun_path + 1, name.data(), name.size());
  address.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  return true;
}

Descriptor NewSocket() { return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)); }

/// Not open when the name can't be had; `errno` says why.
Descriptor Take(const Address& address) {
  Descriptor socket = NewSocket();
  if (!socket.IsOpen() || ::bind(socket.Number(), address.Generic(), address.size) != 0 ||
      ::listen(socket.Number(), SOMAXCONN) != 0) {
    const int reason = errno;
    socket.Reset();
    errno = reason;
  }
  return socket;
}

/// Returns when the holder has gone, or without need.
void AwaitEndOfHolder(const Address& address) {
  constexpr int kMillisecondsUntilItListens = 1;
  const Descriptor link = NewSocket();
  if (::connect(link.Number(), address.Generic(), address.size) != 0) {
    if (errno == ECONNREFUSED) ::poll(nullptr, 0, kMillisecondsUntilItListens);
    return;
  }
  char nothing = 0;
  WithoutInterrupts([&] { return ::recv(link.Number(), &nothing, sizeof nothing, 0); });
}

NamedMutex::Attempt Unavailable() {
  return {NamedMutex::Outcome::kUnavailable, nullptr, std::generic_category().message(errno)};
}

}  // namespace

std::unique_ptr<NamedMutex> NamedMutex::Acquire(const std::string& name) {
  Address address;
  if (!MakeAddress(name, address)) return nullptr;
  for (;;) {
    Descriptor socket = Take(address);
    if (socket.IsOpen()) return std::make_unique<SocketMutex>(std::move(socket));
    if (errno != EADDRINUSE) return nullptr;
    AwaitEndOfHolder(address);
  }
}

NamedMutex::Attempt NamedMutex::TryAcquire(const std::string& name) {
  Address address;
  if (!MakeAddress(name, address)) return Unavailable();
  Descriptor socket = Take(address);
  if (socket.IsOpen()) {
    return {Outcome::kTaken, std::make_unique<SocketMutex>(std::move(socket)), {}};
  }
  if (errno == EADDRINUSE) return {Outcome::kHeldElsewhere, nullptr, {}};
  return Unavailable();
}

}  // namespace gantry::platform
