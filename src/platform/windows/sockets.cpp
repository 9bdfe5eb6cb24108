#include "platform/sockets.h"

#include <algorithm>
#include <climits>

#include "platform/windows/win32.h"
//
#include <boost/asio/detail/winsock_init.hpp>
#include <ws2tcpip.h>

#include "platform/ip_sockets.h"

namespace gantry::platform {

const bool kListenerReusesAddress = false;

namespace {

/// Made before every other global object: without it Boost.Asio starts the socket library from one
/// of its own, which a DLL must not do while it is being loaded. Whoever uses Asio holds a
/// `SocketLibrary` instead.
[[gnu::init_priority(101)]] const boost::asio::detail::winsock_init<>::manual startedByItsUsers;

constexpr WORD kLibraryVersion = 2;
constexpr DWORD kPauseMilliseconds = 100;
constexpr int kLongestWaitSeconds = 1'000'000;

SOCKET Native(SocketHandle socket) { return static_cast<SOCKET>(socket); }

/// One call moves no more than an int can tell.
int PieceOf(size_t length) { return static_cast<int>(std::min<size_t>(length, INT_MAX)); }

class WindowsSockets : public IpSockets<SOCKET> {
 public:
  bool StartUp() override {
    WSADATA about;
    return WSAStartup(kLibraryVersion, &about) == 0;
  }
  void CleanUp() override { WSACleanup(); }

  SocketHandle OpenTcp() override {
    return static_cast<SocketHandle>(WSASocketA(AF_INET, SOCK_STREAM, IPPROTO_TCP, nullptr, 0,
                                                WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT));
  }

  void Close(SocketHandle socket) override { ::closesocket(Native(socket)); }

  bool SetBlocking(SocketHandle socket, bool blocking) override {
    u_long nonBlocking = blocking ? 0 : 1;
    return ::ioctlsocket(Native(socket), static_cast<long>(FIONBIO), &nonBlocking) == 0;
  }

  int Connect(SocketHandle socket, uint32_t address, uint16_t port) override {
    const sockaddr_in peer = AddressOf(address, port);
    return ::connect(Native(socket), Generic(peer), sizeof peer);
  }

  SocketHandle Accept(SocketHandle socket) override {
    const SOCKET accepted = ::accept(Native(socket), nullptr, nullptr);
    if (accepted != INVALID_SOCKET) {
      SetHandleInformation(reinterpret_cast<HANDLE>(accepted), HANDLE_FLAG_INHERIT, 0);
    }
    return static_cast<SocketHandle>(accepted);
  }

  // No set for errors: a refused connection runs into the limit.
  int Select(SocketHandle socket, bool orWritable, std::optional<int> limitSeconds) override {
    fd_set readable;
    FD_ZERO(&readable);
    readable.fd_array[readable.fd_count++] = Native(socket);
    fd_set writable = readable;
    timeval limit{};
    if (limitSeconds) limit.tv_sec = std::min(*limitSeconds, kLongestWaitSeconds);
    return ::select(0, &readable, orWritable ? &writable : nullptr, nullptr,
                    limitSeconds ? &limit : nullptr);
  }

  int64_t Send(SocketHandle socket, std::span<const std::byte> bytes) override {
    return ::send(Native(socket), reinterpret_cast<const char*>(bytes.data()),
                  PieceOf(bytes.size()), 0);
  }

  int64_t Receive(SocketHandle socket, std::span<std::byte> bytes) override {
    return ::recv(Native(socket), reinterpret_cast<char*>(bytes.data()), PieceOf(bytes.size()), 0);
  }

  int64_t Available(SocketHandle socket) override {
    u_long available = 0;
    const bool known = ::ioctlsocket(Native(socket), FIONREAD, &available) == 0;
    return known ? static_cast<int64_t>(available) : kSocketError;
  }

  void PauseOnClosedPeer(SocketHandle) override { Sleep(kPauseMilliseconds); }

  int LastError() override { return WSAGetLastError(); }
  bool IsWouldBlock(int error) override { return error == WSAEWOULDBLOCK; }
  bool IsInProgress(int error) override { return error == WSAEINPROGRESS; }
};

}  // namespace

SocketCalls& SystemSockets() {
  static WindowsSockets calls;
  return calls;
}

}  // namespace gantry::platform
