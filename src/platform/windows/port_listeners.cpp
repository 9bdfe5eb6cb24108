#include "platform/port_listeners.h"

#include <algorithm>
#include <cstring>
#include <system_error>

#include "platform/windows/win32.h"
//
#include <iphlpapi.h>
#include <ws2tcpip.h>

namespace gantry::platform {

namespace {

/// The system's table of listeners of one address family, which may grow while it is asked for.
template <class Table>
std::vector<std::byte> ReadTable(ULONG family) {
  std::vector<std::byte> bytes(sizeof(Table));
  for (;;) {
    auto size = static_cast<DWORD>(bytes.size());
    const DWORD outcome =
        GetExtendedTcpTable(bytes.data(), &size, FALSE, family, TCP_TABLE_OWNER_MODULE_LISTENER, 0);
    if (outcome == NO_ERROR) return bytes;
    if (outcome == ERROR_NOT_SUPPORTED) return std::vector<std::byte>(sizeof(Table));  // no IPv6
    if (outcome != ERROR_INSUFFICIENT_BUFFER) {
      throw std::system_error(static_cast<int>(outcome), std::system_category(),
                              "the table of listening ports");
    }
    bytes.resize(std::max<size_t>(size, bytes.size() * 2));
  }
}

bool Reaches(const MIB_TCPROW_OWNER_MODULE& row, PortListener::Reach& reach) {
  const bool isLoopback = row.dwLocalAddr == htonl(INADDR_LOOPBACK);
  reach = isLoopback ? PortListener::Reach::kLoopback : PortListener::Reach::kAllOfIPv4;
  return isLoopback || row.dwLocalAddr == htonl(INADDR_ANY);
}

bool Reaches(const MIB_TCP6ROW_OWNER_MODULE& row, PortListener::Reach& reach) {
  reach = PortListener::Reach::kAll;
  return std::memcmp(row.ucLocalAddr, &in6addr_any, sizeof in6addr_any) == 0;
}

template <class Table>
void AppendListeners(ULONG family, uint16_t port, std::vector<PortListener>& listeners) {
  const std::vector<std::byte> bytes = ReadTable<Table>(family);
  const auto& table = *reinterpret_cast<const Table*>(bytes.data());
  for (DWORD i = 0; i < table.dwNumEntries; ++i) {
    const auto& row = table.table[i];
    PortListener listener;
    if (row.dwLocalPort != htons(port) || !Reaches(row, listener.reach)) continue;
    listener.socket = row.dwOwningPid;
    listener.since = static_cast<uint64_t>(row.liCreateTimestamp.QuadPart);
    listeners.push_back(listener);
  }
}

}  // namespace

std::vector<PortListener> ListenersOn(uint16_t port) {
  std::vector<PortListener> listeners;
  AppendListeners<MIB_TCPTABLE_OWNER_MODULE>(AF_INET, port, listeners);
  AppendListeners<MIB_TCP6TABLE_OWNER_MODULE>(AF_INET6, port, listeners);
  return listeners;
}

}  // namespace gantry::platform
