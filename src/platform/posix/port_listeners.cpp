#include "platform/port_listeners.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <utility>

namespace gantry::platform {

namespace {

/// The columns of the kernel's tables of TCP sockets, as far as they are read; proc(5).
struct TableRow {
  std::string number, local, remote, state, queues, timer, retransmits, user, timeout;
  uint64_t inode = 0;
};

std::istream& operator>>(std::istream& line, TableRow& row) {
  return line >> row.number >> row.local >> row.remote >> row.state >> row.queues >> row.timer >>
         row.retransmits >> row.user >> row.timeout >> row.inode;
}

constexpr const char* kListening = "0A";

/// The addresses as the tables write them: words of 32 bits in the machine's byte order.
constexpr std::pair<const char*, PortListener::Reach> kReaches[] = {
    {"0100007F", PortListener::Reach::kLoopback},
    {"0000000000000000FFFF00000100007F", PortListener::Reach::kLoopback},
    {"00000000", PortListener::Reach::kAllOfIPv4},
    {"0000000000000000FFFF000000000000", PortListener::Reach::kAllOfIPv4},
    {"00000000000000000000000000000000", PortListener::Reach::kAll},
};

/// How far a listener at this "ADDRESS:PORT" reaches; none on another port, or when a connection to
/// 127.0.0.1 doesn't come to it.
std::optional<PortListener::Reach> ReachOf(const std::string& local, uint16_t port) {
  const size_t colon = local.find(':');
  if (colon == std::string::npos) return std::nullopt;
  if (std::strtoul(local.c_str() + colon + 1, nullptr, 16) != port) return std::nullopt;
  for (const auto& [address, reach] : kReaches) {
    if (local.compare(0, colon, address) == 0) return reach;
  }
  return std::nullopt;
}

void AppendListeners(std::istream& table, uint16_t port, std::vector<PortListener>& listeners) {
  std::string line;
  while (std::getline(table, line)) {
    TableRow row;
    if (!(std::istringstream(line) >> row) || row.state != kListening) continue;
    if (const auto reach = ReachOf(row.local, port)) listeners.push_back({*reach, row.inode, 0});
  }
}

}  // namespace

std::vector<PortListener> ListenersOn(uint16_t port) {
  std::ifstream table("/proc/net/tcp");
  if (!table) {
    throw std::system_error(errno, std::generic_category(), "the table of listening ports");
  }
  std::vector<PortListener> listeners;
  AppendListeners(table, port, listeners);
  std::ifstream tableOfIPv6("/proc/net/tcp6");  // which a machine without IPv6 doesn't have
  AppendListeners(tableOfIPv6, port, listeners);
  return listeners;
}

}  // namespace gantry::platform
