#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "client/tcp_connection.h"

namespace {

std::atomic<int> interruptedConnects = 0;

}  // namespace

/// The system's call, as it ends when a signal comes while the peer is already taking the
/// connection.
extern "C" int connect(int socket, const sockaddr* address, socklen_t size) {
  const long result = ::syscall(SYS_connect, socket, address, size);
  if (result != 0 || address->sa_family != AF_INET || interruptedConnects == 0) {
    return static_cast<int>(result);
  }
  --interruptedConnects;
  errno = EINTR;
  return -1;
}

namespace gantry {
namespace {

TEST(TcpConnection, KeepsAConnectionThatASignalInterruptsWhileItIsMade) {
  TcpListener listener(0);
  interruptedConnects = 1;
  TcpConnection client;
  client.Connect("localhost", listener.Port(), 5);
  EXPECT_EQ(interruptedConnects, 0);
  const std::unique_ptr<TcpConnection> server = listener.Accept(5);
  ASSERT_NE(server, nullptr);
  std::array<std::byte, 1> byte = {std::byte{7}};
  client.Write(byte);
  EXPECT_NO_THROW(server->Read(byte)) << "a second connection has taken the place of the first";
}

std::atomic<int> signalsSeen = 0;

TEST(TcpConnection, OutlastsSignalsThatTheHostHandles) {
  struct sigaction counting {};
  counting.sa_handler = [](int) { ++signalsSeen; };  // without SA_RESTART: system calls are cut off
  struct sigaction before {};
  ASSERT_EQ(sigaction(SIGUSR1, &counting, &before), 0);

  TcpListener listener(0);
  TcpConnection client;
  client.Connect("localhost", listener.Port(), 5);
  const std::unique_ptr<TcpConnection> server = listener.Accept(5);
  ASSERT_NE(server, nullptr);
  std::array<std::byte, 2> received{};
  std::thread reader([&] { client.Read(received); });
  const pthread_t waiting = reader.native_handle();
  while (signalsSeen < 200) {
    pthread_kill(waiting, SIGUSR1);
    std::this_thread::yield();
  }
  const std::array<std::byte, 2> bytes = {std::byte{1}, std::byte{2}};
  server->Write(bytes);
  reader.join();
  EXPECT_EQ(received, bytes);
  sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace
}  // namespace gantry
