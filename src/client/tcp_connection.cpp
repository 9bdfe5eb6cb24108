#include "client/tcp_connection.h"

#include <bit>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>

#include "platform/sockets.h"

namespace gantry {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kKnockInterval{500};

/// Moves all bytes in as many parts as it takes. A signal that a handler of the host has dealt with
/// doesn't end a wait that may last for hours.
template <class Bytes, class Move>
void MoveAll(Bytes bytes, const char* context, Move move) {
  while (!bytes.empty()) {
    boost::system::error_code failure;
    bytes = bytes.subspan(move(bytes, failure));
    if (failure && failure != asio::error::interrupted) {
      throw boost::system::system_error(failure, context);
    }
  }
}

}  // namespace

struct TcpConnection::Socket {
  Socket() : socket(service) {}

  /// Tries each address once; true when somebody has answered.
  bool Knock(const tcp::resolver::results_type& addresses) {
    for (const auto& address : addresses) {
      socket.close();
      if (Try(address.endpoint())) return true;
    }
    return false;
  }

  /// By the platform's own call, which sees a connection that a signal interrupts through to its
  /// outcome: the peer may have taken it by then, and takes no second one.
  bool Try(const tcp::endpoint& peer) {
    socket.open(tcp::v4());
    const auto address = std::bit_cast<uint32_t>(peer.address().to_v4().to_bytes());
    const auto handle = static_cast<platform::SocketHandle>(socket.native_handle());
    return platform::SystemSockets().Connect(handle, address, peer.port()) == 0;
  }

  platform::SocketLibrary library;
  asio::io_service service;
  tcp::socket socket;
};

TcpConnection::TcpConnection(platform::Bystanders bystanders)
    : bystanders_(std::move(bystanders)), socket_(std::make_unique<Socket>()) {}

TcpConnection::~TcpConnection() = default;

void TcpConnection::Connect(const std::string& host, uint32_t port, uint32_t timeoutSeconds) {
  tcp::resolver resolver(socket_->service);
  const tcp::resolver::results_type addresses =
      resolver.resolve(tcp::v4(), host, std::to_string(port), tcp::resolver::numeric_service);
  const Clock::time_point start = Clock::now();
  Clock::time_point lastAttempt = start;
  while (bystanders_.WouldAnswer() || !socket_->Knock(addresses)) {
    const Clock::time_point now = Clock::now();
    if (std::chrono::duration_cast<std::chrono::seconds>(now - start).count() > timeoutSeconds) {
      throw std::runtime_error("Connection timed out.");
    }
    if (now - lastAttempt < kKnockInterval) {
      std::this_thread::sleep_for(kKnockInterval - (now - lastAttempt));
    }
    lastAttempt = Clock::now();
  }
  socket_->socket.set_option(tcp::no_delay(true));
}

void TcpConnection::Read(std::span<std::byte> bytes) {
  MoveAll(bytes, "read", [this](std::span<std::byte> rest, boost::system::error_code& failure) {
    return socket_->socket.read_some(asio::buffer(rest.data(), rest.size()), failure);
  });
}

void TcpConnection::Write(std::span<const std::byte> bytes) {
  MoveAll(bytes, "write",
          [this](std::span<const std::byte> rest, boost::system::error_code& failure) {
            return socket_->socket.write_some(asio::buffer(rest.data(), rest.size()), failure);
          });
}

struct TcpListener::Acceptor {
  explicit Acceptor(uint16_t port)
      : acceptor(service, tcp::endpoint(asio::ip::address_v4::loopback(), port),
                 platform::kListenerReusesAddress) {}

  platform::SocketLibrary library;
  asio::io_service service;
  tcp::acceptor acceptor;
};

TcpListener::TcpListener(uint16_t port) : acceptor_(std::make_unique<Acceptor>(port)) {}

TcpListener::~TcpListener() = default;

uint16_t TcpListener::Port() const { return acceptor_->acceptor.local_endpoint().port(); }

std::unique_ptr<TcpConnection> TcpListener::Accept(int timeoutSeconds) {
  auto connection = std::make_unique<TcpConnection>();
  boost::system::error_code outcome = asio::error::would_block;
  acceptor_->service.restart();
  acceptor_->acceptor.async_accept(
      connection->socket_->socket,
      [&outcome](const boost::system::error_code& error) { outcome = error; });
  if (timeoutSeconds < 0) {
    acceptor_->service.run();
  } else {
    acceptor_->service.run_for(std::chrono::seconds(timeoutSeconds));
  }
  if (outcome == asio::error::would_block) {
    acceptor_->acceptor.cancel();
    acceptor_->service.run();
    if (outcome == asio::error::operation_aborted) return nullptr;
  }
  if (outcome) throw boost::system::system_error(outcome, "accept");
  connection->socket_->socket.set_option(tcp::no_delay(true));
  return connection;
}

}  // namespace gantry
