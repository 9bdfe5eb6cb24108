#include "support/isolation.h"

#include <cstdlib>
#include <fstream>
#include <memory>

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/named_mutex.h"

namespace gantry::test {

namespace fs = std::filesystem;

namespace {

/// A new network namespace, for which a user who isn't root needs one of users around it.
bool LeaveTheNetwork() {
  if (::unshare(CLONE_NEWNET) == 0) return true;
  const std::string map = std::to_string(::geteuid()) + " " + std::to_string(::geteuid()) + " 1";
  if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
  std::ofstream("/proc/self/uid_map") << map;
  return true;
}

void BringUpLoopback() {
  ifreq loopback{"lo", {}};
  const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
  ::ioctl(socket, SIOCGIFFLAGS, &loopback);
  loopback.ifr_flags |= IFF_UP;
  ::ioctl(socket, SIOCSIFFLAGS, &loopback);
  ::close(socket);
}

/// Ports and slots are the network namespace's: each test program has one of its own. Where the
/// system gives it none, or its peers are outside, those programs take turns.
std::unique_ptr<platform::NamedMutex> IsolateNetwork() {
  const bool stays = std::getenv("GANTRY_TESTS_SHARE_NETWORK") != nullptr;
  if (stays || !LeaveTheNetwork()) return platform::NamedMutex::Acquire("GantryTests");
  BringUpLoopback();
  return nullptr;
}

const std::unique_ptr<platform::NamedMutex> turn = IsolateNetwork();

}  // namespace

void SetEnvironment(const char* name, const std::optional<std::string>& value) {
  value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
}

void IsolateSettings(const fs::path& folder) {
  const fs::path place = folder / "XDG_CONFIG_HOME";
  fs::create_directory(place);
  SetEnvironment("XDG_CONFIG_HOME", place.string());
}

}  // namespace gantry::test
