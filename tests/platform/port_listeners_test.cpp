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

TEST_F(PortListeners, AreBystandersWhereAConnectionToThisMachineReachesThemUntilTheyGo) {
  struct Row {
    const char *old, *newcomer;
    bool wouldAnswer;
  };
  for (const Row& row : {Row{"127.0.0.1", nullptr, true},
                         {"0.0.0.0", nullptr, true},
                         {"::", nullptr, true},
                         {"::", "127.0.0.1", false},  // the nearest is asked
                         {"127.0.0.2", "127.0.0.1", false}}) {
    auto old = Listen(row.old);
    if (!old) continue;  // no IPv6 here
    const Bystanders bystanders(PortOf(old));
    const auto newcomer =
        row.newcomer != nullptr ? Listen(row.newcomer, PortOf(old)) : std::nullopt;
    EXPECT_EQ(bystanders.WouldAnswer(), row.wouldAnswer) << row.old;
    old->close();
    EXPECT_FALSE(bystanders.WouldAnswer()) << row.old;
  }
}

TEST_F(PortListeners, CountOnlyWhereTheyCanBeReachedAndAreNobodyWhileTheyAreIgnored) {
  const auto elsewhere = Listen("127.0.0.2");
  EXPECT_TRUE(ListenersOn(PortOf(elsewhere)).empty());
  const auto here = Listen("127.0.0.1", PortOf(elsewhere));
  EXPECT_EQ(ListenersOn(PortOf(elsewhere)).size(), 1u);
  {
    const IgnoredBystanders ignored;
    EXPECT_FALSE(Bystanders(PortOf(here)).WouldAnswer());
  }
  EXPECT_TRUE(Bystanders(PortOf(here)).WouldAnswer());
}

}  // namespace
}  // namespace gantry::platform
