#include <array>
#include <atomic>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>
#include <pthread.h>

#include "client/tcp_connection.h"

namespace gantry {
namespace {

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
