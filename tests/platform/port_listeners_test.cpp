#include "platform/port_listeners.h"

#include <optional>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ip/v6_only.hpp>
#include <gtest/gtest.h>

#include "platform/sockets.h"

namespace gantry::platform {
namespace {

using boost::asio::ip::tcp;

class PortListeners : public testing::Test {
 protected:
  /// A listener at the address, on a free port when it is 0; none where there is no such address.
  std::optional<tcp::acceptor> Listen(const char* address, uint16_t port = 0) {
    const tcp::endpoint endpoint(boost::asio::ip::make_address(address), port);
    tcp::acceptor acceptor(context_);
    boost::system::error_code failure;
    acceptor.open(endpoint.protocol(), failure);
    if (endpoint.address().is_v6()) acceptor.set_option(boost::asio::ip::v6_only(true), failure);
    if (!failure) acceptor.bind(endpoint, failure);
    if (!failure) acceptor.listen(1, failure);
    if (failure) return std::nullopt;
    return acceptor;
  }
  static uint16_t PortOf(const std::optional<tcp::acceptor>& listener) {
    return listener->local_endpoint().port();
  }

  SocketLibrary library_;
  boost::asio::io_context context_;
};

TEST_F(PortListeners, AreBystandersUntilTheyGo) {
  for (const char* address : {"127.0.0.1", "0.0.0.0"}) {
    auto old = Listen(address);
    const Bystanders bystanders(PortOf(old));
    EXPECT_TRUE(bystanders.WouldAnswer()) << address;
    old->close();
    EXPECT_FALSE(bystanders.WouldAnswer()) << address;
  }
}

TEST_F(PortListeners, CountOnlyWhereAConnectionToThisMachineWouldReachThem) {
  const auto elsewhere = Listen("127.0.0.2");
  EXPECT_TRUE(ListenersOn(PortOf(elsewhere)).empty());
  const Bystanders bystanders(PortOf(elsewhere));
  const auto other = Listen("127.0.0.1", PortOf(elsewhere));
  EXPECT_FALSE(bystanders.WouldAnswer());
  EXPECT_EQ(ListenersOn(PortOf(elsewhere)).size(), 1u);
}

TEST_F(PortListeners, AreAskedTheNearestFirst) {
  const auto wide = Listen("::");
  if (!wide) GTEST_SKIP() << "no IPv6 here";
  const Bystanders bystanders(PortOf(wide));
  EXPECT_TRUE(bystanders.WouldAnswer());
  const auto narrow = Listen("127.0.0.1", PortOf(wide));
  ASSERT_TRUE(narrow);
  EXPECT_FALSE(bystanders.WouldAnswer()) << "the newcomer would take the connection";
}

TEST_F(PortListeners, AreNobodyWhileTheyAreIgnored) {
  const auto old = Listen("127.0.0.1");
  const IgnoredBystanders ignored;
  EXPECT_FALSE(Bystanders(PortOf(old)).WouldAnswer());
}

}  // namespace
}  // namespace gantry::platform
