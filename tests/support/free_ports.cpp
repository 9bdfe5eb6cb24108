#include "support/free_ports.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <vector>

#include <boost/system/system_error.hpp>
#include <unistd.h>

#include "client/tcp_connection.h"

namespace gantry::test {
namespace {

bool IsFree(int port) {
  try {
    const TcpListener listener(static_cast<uint16_t>(port));
    return true;
  } catch (const boost::system::system_error&) {
    return false;
  }
}

}  // namespace

// Below the range from which systems give ports to connections, and each test process begins at a
// place of its own: so nobody takes a port between this look and its use.
int FreePorts(int count) {
  constexpr int kFirst = 10000;
  constexpr int kBlocks = 2500;
  constexpr int kBlockSize = 8;
  const int start = static_cast<int>(::getpid()) % kBlocks;
  for (int tries = 0; tries < kBlocks; ++tries) {
    std::vector<int> ports(static_cast<size_t>(count));
    std::iota(ports.begin(), ports.end(), kFirst + (start + tries) % kBlocks * kBlockSize);
    if (std::ranges::all_of(ports, IsFree)) return ports.front();
  }
  throw std::runtime_error("no free ports");
}

}  // namespace gantry::test
