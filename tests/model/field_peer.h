#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/port_listeners.h"
#include "support/scripted_peer.h"
#include "support/simulated_field.h"

namespace gantry::test {

/// The gravity of the oil that a producer makes on a liquid rate, water = 1.
constexpr double OilGravityAt(double rate) { return 0.8 + rate / 20000.0; }

/// The simulator's end of the external-controller protocol on a real loopback socket: a small field
/// in field units that answers whatever it is asked, one client after the other. A producer on a
/// liquid rate q makes 0.8 q oil, 0.2 q water and 0.5 q gas (thousands of cubic feet), at a
/// bottom-hole pressure of 3014.696 - q psia. It writes down what it was told to do. Set it up
/// before `Start`; the client must be gone before it is destroyed.
class FieldPeer : public SimulatedField {
 public:
  FieldPeer();

  uint16_t Port() const { return peer_.Port(); }
  void Start() { peer_.Start(); }

  /// What the peer was told to do since the last call, one line each: run controls and setters, but
  /// not those of an inflow sweep, which forces the wells open and constrains them ten times.
  Texts TakeOrders();
  /// The field may be changed between two messages.
  void Change(const std::function<void()>& change);
  /// Whoever is to be told the name of each message before it is answered, on the peer's own
  /// thread.
  using Heed = std::function<void(const std::string& message)>;
  void HeedEach(Heed heed) {
    Change([&] { heed_ = std::move(heed); });
  }

  std::map<std::string, double> variables;  ///< further items of every well

 private:
  std::vector<Entries> Hear(const Entries& message);

  std::mutex lock_;
  Heed heed_;
  platform::IgnoredBystanders counted_;  ///< it listens before the simulator's process is started
  ScriptedPeer peer_;
};

}  // namespace gantry::test
