#include "client/tcp_connection.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <boost/system/system_error.hpp>
#include <gtest/gtest.h>

#include "support/free_ports.h"
#include "support/raised.h"

namespace gantry::test {
namespace {

TEST(Connecting, GivesUpOnceTheWholeSecondsExceedTheLimit) {
  const auto start = std::chrono::steady_clock::now();
  TcpConnection connection;
  EXPECT_EQ(Raised([&] { connection.Connect("localhost", static_cast<uint16_t>(FreePorts()), 0); }),
            "runtime_error: Connection timed out.");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(Connecting, LeavesAloneWhoListenedBefore) {
  TcpListener old(0);
  TcpConnection connection{platform::Bystanders(old.Port())};
  EXPECT_EQ(Raised([&] { connection.Connect("localhost", old.Port(), 0); }),
            "runtime_error: Connection timed out.");
  EXPECT_EQ(old.Accept(0), nullptr) << "nobody may have knocked there";
}

TEST(Connection, HandsOutWhatItReadAheadUntilItIsOpenedAnew) {
  TcpListener listener(0);
  EXPECT_EQ(listener.Accept(0), nullptr) << "nobody has come";
  TcpConnection client;
  client.Connect("localhost", listener.Port(), 5);
  std::unique_ptr<TcpConnection> server = listener.Accept(5);
  std::vector<std::byte> sent(200'000), received(sent.size());
  for (size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<std::byte>(i * i / 7);
  std::thread sender([&] {
    const std::span all(sent);
    const std::span<const std::byte> parts[] = {all.first(16), {}, all.subspan(16)};
    server->WriteParts(parts);
    server.reset();
  });
  // All but the last three bytes, in reads of any length.
  size_t at = 0;
  for (size_t length = 1; at + 3 < sent.size(); at += length, length = length * 3 + 1) {
    length = std::min(length, sent.size() - 3 - at);
    client.Read(std::span(received).subspan(at, length));
  }
  client.Read(std::span(received).subspan(at++, 1));
  sender.join();
  client.Read(std::span(received).subspan(at++, 1));
  EXPECT_THROW(client.Read(std::span(received).subspan(at, 2)), boost::system::system_error);
  EXPECT_TRUE(std::equal(sent.begin(), sent.end() - 1, received.begin()));

  client.Connect("localhost", listener.Port(), 5);
  server = listener.Accept(5);
  server->Write(std::span(sent).first(3));
  client.Read(std::span(received).first(1));
  client.Connect("localhost", listener.Port(), 5);
  server = listener.Accept(5);
  server->Write(std::span(sent).last(1));
  client.Read(std::span(received).first(1));
  EXPECT_EQ(received.front(), sent.back()) << "nothing is left of the connection before";
}

}  // namespace
}  // namespace gantry::test
