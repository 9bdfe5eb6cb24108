#include "support/free_ports.h"

#include "platform/registry.h"
#include "remote/socket.h"
#include "settings/machine_config.h"

namespace gantry::test {

// From below the range from which systems give ports to connections. A port that cools down from an
// earlier connection isn't free, since not every listener may have it.
int FreePorts(int count) {
  static int next = 10000;
  int first = next;
  for (int port = first; port < first + count; ++port) {
    if (IsPortFree(static_cast<uint16_t>(port)) != 0) first = port + 1;
  }
  next = first + count;
  return first;
}

void StartSimulatorsOnFreePorts() {
  constexpr int kPorts = 4;
  static const int first = FreePorts(kPorts);
  const auto key = platform::RegistryKey::Create(platform::kCurrentUser, kRegistryKey);
  key->WriteNumber("StartPort", static_cast<uint32_t>(first));
  key->WriteNumber("EndPort", static_cast<uint32_t>(first + kPorts - 1));
}

}  // namespace gantry::test
