#include "client/tcp_connection.h"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

#include <boost/asio/io_service.hpp>
#include <boost/asio/ip/tcp.hpp>

#include "platform/read_ahead.h"
#include "platform/sockets.h"

namespace gantry {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds kKnockInterval{500};

constexpr size_t kBesideLarge = 512;  ///< read ahead of a large read: what is worth its second copy
using ReadAhead = platform::ReadAhead<16384>;
using Parts = std::span<const std::span<const std::byte>>;
using Buffers = std::span<asio::const_buffer>;

/// A signal that a handler of the host has dealt with doesn't end a wait that may last for hours.
void CheckOutcome(const boost::system::error_code& failure, const char* context) {
  if (failure && failure != asio::error::interrupted) {
    throw boost::system::system_error(failure, context);
  }
}

std::vector<asio::const_buffer> BuffersOf(Parts parts) {
  std::vector<asio::const_buffer> buffers;
  buffers.reserve(parts.size());
  for (const auto& part : parts) {
    if (!part.empty()) buffers.emplace_back(part.data(), part.size());
  }
  return buffers;
}

/// What is left of the buffers behind so many bytes.
Buffers Behind(Buffers buffers, size_t size) {
  while (!buffers.empty() && size >= buffers.front().size()) {
    size -= buffers.front().size();
    buffers = buffers.subspan(1);
  }
  if (!buffers.empty()) buffers.front() += size;
  return buffers;
}

}  // namespace

struct TcpConnection::Socket {
  Socket() : socket(service) {}

  /// Tries each address once; true when somebody has answered.
  bool Knock(const tcp::resolver::results_type& addresses) {
    ahead.Clear();
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
  ReadAhead ahead;
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
  ReadAhead& ahead = socket_->ahead;
  for (bytes = ahead.Take(bytes); !bytes.empty();) {
    const std::span<std::byte> space = ahead.Space();
    const size_t more = bytes.size() < space.size() ? space.size() : kBesideLarge;
    const std::array<asio::mutable_buffer, 2> targets = {asio::buffer(bytes.data(), bytes.size()),
                                                         asio::buffer(space.data(), more)};
    boost::system::error_code failure;
    const size_t received = socket_->socket.read_some(targets, failure);
    CheckOutcome(failure, "read");
    const size_t asked = std::min(received, bytes.size());
    ahead.Add(received - asked);
    bytes = bytes.subspan(asked);
  }
}

void TcpConnection::WriteParts(std::span<const std::span<const std::byte>> parts) {
  std::vector<asio::const_buffer> buffers = BuffersOf(parts);
  for (Buffers rest = buffers; !rest.empty();) {
    boost::system::error_code failure;
    const size_t written = socket_->socket.write_some(rest, failure);
    CheckOutcome(failure, "write");
    rest = Behind(rest, written);
  }
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
