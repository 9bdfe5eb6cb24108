#pragma once

// The socket calls that every system spells alike. Included by the systems' own files alone, behind
// the system's headers that declare them.

#include "platform/sockets.h"

namespace gantry::platform {

inline sockaddr_in AddressOf(uint32_t address, uint16_t port) {
  sockaddr_in result{};
  result.sin_family = AF_INET;
  result.sin_addr.s_addr = address;
  result.sin_port = htons(port);
  return result;
}

inline const sockaddr* Generic(const sockaddr_in& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

/// `Native` is the type in which the system numbers its sockets.
template <class Native>
class IpSockets : public SocketCalls {
 public:
  std::optional<uint32_t> FindHost(const std::string& name) override {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(name.c_str(), nullptr, &hints, &found) != 0) return std::nullopt;
    const uint32_t address = reinterpret_cast<sockaddr_in*>(found->ai_addr)->sin_addr.s_addr;
    ::freeaddrinfo(found);
    return address;
  }

  int Bind(SocketHandle socket, uint16_t port) override {
    const sockaddr_in own = AddressOf(htonl(INADDR_ANY), port);
    return ::bind(static_cast<Native>(socket), Generic(own), sizeof own);
  }

  int Listen(SocketHandle socket, int backlog) override {
    return ::listen(static_cast<Native>(socket), backlog);
  }
};

}  // namespace gantry::platform
