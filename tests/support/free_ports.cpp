#include "support/free_ports.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <unistd.h>

#include "platform/registry.h"
#include "platform/sockets.h"
#include "settings/machine_config.h"

namespace gantry::test {
namespace {

using boost::asio::ip::tcp;

// Below the range from which systems give ports to connections.
constexpr int kFirst = 10000;
constexpr int kBlocks = 2500;
constexpr int kBlockSize = 8;

/// Holds a port of all interfaces while it lives. Unlike one that listens for peers, it doesn't
/// take a port that cools down from an earlier connection, since not every listener may have that
/// one.
class HeldPort {
 public:
  explicit HeldPort(int port) {
    boost::system::error_code failure;
    socket_.open(tcp::v4(), failure);
    if (!failure) socket_.bind({tcp::v4(), static_cast<uint16_t>(port)}, failure);
    isHeld_ = !failure;
  }

  bool IsHeld() const { return isHeld_; }

 private:
  platform::SocketLibrary library_;
  boost::asio::io_context context_;
  tcp::acceptor socket_{context_};
  bool isHeld_ = false;
};

bool IsFree(int port) { return HeldPort(port).IsHeld(); }

}  // namespace

// The first port of a block is the claim to the others, which this process holds until it ends.
int FreePorts(int count) {
  static const platform::SocketLibrary library;  // outlives the claims at the end of the process
  static std::vector<std::unique_ptr<HeldPort>> claims;
  if (count >= kBlockSize) throw std::invalid_argument("so many ports don't stand together");
  const int start = static_cast<int>(::getpid()) % kBlocks;
  for (int tries = 0; tries < kBlocks; ++tries) {
    const int block = kFirst + (start + tries) % kBlocks * kBlockSize;
    auto claim = std::make_unique<HeldPort>(block);
    if (!claim->IsHeld()) continue;
    std::vector<int> ports(static_cast<size_t>(count));
    std::iota(ports.begin(), ports.end(), block + 1);
    if (!std::ranges::all_of(ports, IsFree)) continue;
    claims.push_back(std::move(claim));
    return ports.front();
  }
  throw std::runtime_error("no free ports");
}

void StartSimulatorsOnFreePorts() {
  constexpr int kPorts = 4;
  static const int first = FreePorts(kPorts);
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  key->WriteNumber("StartPort", static_cast<uint32_t>(first));
  key->WriteNumber("EndPort", static_cast<uint32_t>(first + kPorts - 1));
}

}  // namespace gantry::test
