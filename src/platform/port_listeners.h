#pragma once

#include <cstdint>
#include <vector>

namespace gantry::platform {

/// A socket of this machine that would take a connection to 127.0.0.1. `socket` and `since` name it
/// for as long as the system runs: none that listens later has both.
struct PortListener {
  /// By how much of the machine it stands for; whoever stands for least is asked first.
  enum class Reach { kLoopback, kAllOfIPv4, kAll };

  Reach reach = Reach::kLoopback;
  uint64_t socket = 0;
  uint64_t since = 0;

  bool operator==(const PortListener&) const = default;
};

/// The listeners on a port at this moment, whoever owns them. Throws std::system_error when the
/// system doesn't tell. Nothing is sent to the port.
std::vector<PortListener> ListenersOn(uint16_t port);

/// Who listened on a port before the process was started that is to listen there.
class Bystanders {
 public:
  Bystanders() = default;  ///< nobody, on any port
  /// Those of this moment. Throws as `ListenersOn`.
  explicit Bystanders(uint16_t port);

  /// True when one of them would take a connection to 127.0.0.1 now. Throws as `ListenersOn`.
  bool WouldAnswer() const;

 private:
  uint16_t port_ = 0;
  std::vector<PortListener> listeners_;
};

/// While it lives, those who listen count as nobody. For tests whose simulator answers from within
/// the test, on a port that is open before its process is started.
class IgnoredBystanders {
 public:
  IgnoredBystanders();
  ~IgnoredBystanders();
  IgnoredBystanders(const IgnoredBystanders&) = delete;
  IgnoredBystanders& operator=(const IgnoredBystanders&) = delete;
};

}  // namespace gantry::platform
