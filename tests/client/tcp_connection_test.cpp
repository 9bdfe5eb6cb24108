#include "client/tcp_connection.h"

#include <array>
#include <chrono>
#include <thread>

#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include "support/free_ports.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

uint16_t FreePort() { return static_cast<uint16_t>(FreePorts()); }

TEST(Connecting, GivesUpOnceTheWholeSecondsExceedTheLimit) {
  const auto start = std::chrono::steady_clock::now();
  TcpConnection connection;
  EXPECT_EQ(Raised([&] { connection.Connect("localhost", FreePort(), 0); }),
            "runtime_error: Connection timed out.");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(Connecting, TakesAListenerThatComesUpLate) {
  const uint16_t port = FreePort();
  std::thread late([port] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    TcpListener listener(port);
    EXPECT_NE(listener.Accept(20), nullptr);
  });
  TcpConnection connection;
  connection.Connect("localhost", port, 20);
  late.join();
}

TEST(Connecting, LeavesAloneWhoListenedBefore) {
  TcpListener old(0);
  TcpConnection connection{platform::Bystanders(old.Port())};
  EXPECT_EQ(Raised([&] { connection.Connect("localhost", old.Port(), 0); }),
            "runtime_error: Connection timed out.");
  EXPECT_EQ(old.Accept(0), nullptr) << "nobody may have knocked there";
}

TEST(Connecting, SaysThatAHostIsUnknown) {
  TcpConnection connection;
  EXPECT_THROW(connection.Connect("no..such..host", 1, 1), boost::system::system_error);
}

TEST(Listening, TellsThatAPortIsTaken) {
  TcpListener first(0);
  EXPECT_THROW(TcpListener second(first.Port()), boost::system::system_error);
}

TEST(Listening, GivesUpWhenNobodyComesAndTakesALaterPeer) {
  TcpListener listener(0);
  EXPECT_EQ(listener.Accept(0), nullptr);
  TcpConnection client;
  client.Connect("localhost", listener.Port(), 5);
  const std::unique_ptr<TcpConnection> server = listener.Accept(5);
  ASSERT_NE(server, nullptr);
  const std::array<std::byte, 3> sent = {std::byte{1}, std::byte{2}, std::byte{3}};
  std::array<std::byte, 3> received{};
  server->Write(sent);
  client.Read(received);
  EXPECT_EQ(received, sent);
}

}  // namespace
}  // namespace gantry::test
